#!/usr/bin/env bash
# Builds with Clang, where a warning is an error, and lets clang-tidy read the product's sources.
set -euo pipefail
cd "$(dirname "$0")/.."

cmake -G Ninja -S . -B build/lint -DCMAKE_BUILD_TYPE=Release -DCMAKE_CXX_COMPILER=clang++ \
    -DCMAKE_EXPORT_COMPILE_COMMANDS=ON --log-level=WARNING
cmake --build build/lint

find client config host napi payload -name '*.cpp' -print0 | xargs -0 -n 1 -P "$(nproc)" clang-tidy --quiet -p build/lint

node scripts/check_device_build.mjs
