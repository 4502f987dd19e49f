#!/usr/bin/env bash
# Builds with Clang, where a warning is an error, and runs shellcheck on all shell scripts, clang-tidy on all C++ sources
# and eslint on all JavaScript.
set -euo pipefail
cd "$(dirname "$0")/.."

# tidy BUILD FOLDER…: each source in the folders, compiled as in build/BUILD.
tidy() {
    local build=build/$1
    shift
    # clang-tidy also counts the warnings of the system's headers, which it does not show.
    find "$@" -name '*.cpp' -print0 |
        xargs -0 -n 1 -P "$(nproc)" clang-tidy --quiet -p "$build" 2>&1 | sed '/^[0-9]* warnings\? generated\.$/d'
}

# tidy_project FOLDER: the sources of a project of its own, which is not built.
tidy_project() {
    local build
    build=clang-$(basename "$1")
    cmake -G Ninja -S "$1" -B "build/$build" -DCMAKE_CXX_COMPILER=clang++ -DCMAKE_EXPORT_COMPILE_COMMANDS=ON \
        --log-level=WARNING >/dev/null
    tidy "$build" "$1"
}

shellcheck --severity=warning scripts/*.sh .ci/run test/support/limited_node

cmake --preset clang --log-level=WARNING -DZELK_BUILD_TESTS=ON
cmake --build --preset clang
tidy clang client config host napi payload service testing test/support test/units
tidy_project bench
tidy_project test/fuzz

npx eslint --max-warnings 0 . bin/zelklog
node scripts/check_device_build.mjs
