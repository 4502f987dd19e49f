#!/usr/bin/env bash
# Measures how the time for items, texts and replies grows with their number, and draws docs/growth.svg from the
# figures, which stay in build/bench/growth.dat. The machine should have nothing else to do.
set -euo pipefail
cd "$(dirname "$0")/.."

cmake -G Ninja -S bench -B build/bench -DCMAKE_BUILD_TYPE=Release --log-level=WARNING >&2
cmake --build build/bench >&2
node bench/growth.mjs | tee build/bench/growth.dat
gnuplot bench/growth.gp
echo "drawn: docs/growth.svg"
