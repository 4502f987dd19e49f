#!/usr/bin/env bash
# Builds the product and what it is compared with into build/bench and measures both; the options are bench/run.mjs's:
#
#   scripts/bench.sh [--json | --once] [GROUP…]
#
# The machine should have nothing else to do.
set -euo pipefail
cd "$(dirname "$0")/.."

if ! command -v dbus-daemon >/dev/null; then
    echo "scripts/bench.sh: no dbus-daemon: run \`apt-get install dbus\`" >&2
    exit 1
fi
cmake -G Ninja -S bench -B build/bench -DCMAKE_COMPILE_WARNING_AS_ERROR=ON --log-level=WARNING >&2
cmake --build build/bench >&2
exec node bench/run.mjs "$@"
