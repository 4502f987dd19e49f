#!/usr/bin/env bash
# Runs JavaScript tests, and ends each file that takes too long, whatever it hangs in:
#
#   [NODE=PROGRAM] [LIMIT=SECONDS] [PRELOAD=LIBRARY] scripts/js_tests.sh [OPTION…] FILE…
#
# The options are Node.js's own. The library is loaded into the processes of the tests alone: a shell does not run with
# that of every sanitizer.
set -euo pipefail
support=$(cd "$(dirname "$0")/../test/support" && pwd)
export LIMIT=${LIMIT:-300} PRELOAD=${PRELOAD:-} # The slowest file takes 20 s.

# Node.js alone would leave one processor idle: with two, it runs one file at a time.
exec "${NODE:-node}" --require "$support/limited_files.js" --test --test-concurrency="$(nproc)" "$@"
