#!/usr/bin/env bash
# Builds with the sanitizers of one preset and runs the tests that reach native code:
#
#   scripts/sanitize.sh asan|tsan
set -euo pipefail
cd "$(dirname "$0")/.."
preset=$1
# ThreadSanitizer needs the usual address space layout, without randomization.
usual_addresses="setarch -R"

cmake --preset "$preset" -DZELK_BUILD_TESTS=ON --log-level=WARNING
cmake --build --preset "$preset"
$usual_addresses ctest --preset "$preset"

# The module is loaded into a Node.js that was built without the sanitizer, so the run-time library has to come first.
# Reports about Node.js itself are suppressed: memory that it leaves allocated on exit, and races of its own threads.
case $preset in
    asan)
        runtime=libasan.so
        export ASAN_OPTIONS=detect_leaks=0
        ;;
    tsan)
        runtime=libtsan.so
        export TSAN_OPTIONS="ignore_noninstrumented_modules=1 suppressions=$PWD/scripts/tsan_suppressions.txt"
        ;;
esac

ZELKLOGSERVICE_BUILD=$preset PRELOAD=$(g++ -print-file-name="$runtime") \
    LIMIT=1500 $usual_addresses scripts/js_tests.sh test/{functions,sweeps,kit}/*.test.mjs
