#!/usr/bin/env bash
# Builds with Clang, where a warning is an error, runs clang-tidy on the product's sources and eslint on all JavaScript.
set -euo pipefail
cd "$(dirname "$0")/.."

cmake --preset clang --log-level=WARNING
cmake --build --preset clang

# clang-tidy also counts the warnings of the system's headers, which it does not show.
find client config host napi payload service testing -name '*.cpp' -print0 |
    xargs -0 -n 1 -P "$(nproc)" clang-tidy --quiet -p build/clang 2>&1 | sed '/^[0-9]* warnings\? generated\.$/d'

npx eslint --max-warnings 0 . bin/zelklog
node scripts/check_device_build.mjs
