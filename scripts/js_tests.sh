#!/usr/bin/env bash
# Runs JavaScript tests, and ends each file that takes too long, whatever it hangs in:
#
#   [NODE=PROGRAM] [LIMIT=SECONDS] scripts/js_tests.sh [OPTION…] FILE…
#
# The options are Node.js's own.
set -euo pipefail
support=$(cd "$(dirname "$0")/../test/support" && pwd)
export LIMIT=${LIMIT:-300} # The slowest file takes 20.

exec "${NODE:-node}" --require "$support/limited_files.js" --test "$@"
