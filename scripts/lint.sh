#!/usr/bin/env bash
# Builds with Clang, where a warning is an error, lets clang-tidy read the product's sources, and eslint all JavaScript.
set -euo pipefail
cd "$(dirname "$0")/.."

cmake --preset clang --log-level=WARNING
cmake --build --preset clang

# It counts the warnings of the system's headers too, which it does not show.
find client config host napi payload -name '*.cpp' -print0 |
    xargs -0 -n 1 -P "$(nproc)" clang-tidy --quiet -p build/clang 2>&1 | sed '/^[0-9]* warnings\? generated\.$/d'

npx eslint --max-warnings 0 . bin/zelklog
node scripts/check_device_build.mjs
