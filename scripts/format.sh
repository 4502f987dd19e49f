#!/usr/bin/env bash
# Runs clang-format, with the options given, over all C++ sources.
set -euo pipefail
cd "$(dirname "$0")/.."
find bench client common config host napi payload service test testing \
    -name node_modules -prune -o \( -name '*.h' -o -name '*.cpp' \) -print0 | xargs -0 clang-format --style=file "$@"
