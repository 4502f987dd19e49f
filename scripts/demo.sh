#!/usr/bin/env bash
# Shows the tour twice: with the log service inside the process, then with the service as a process on a bus of its own.
set -euo pipefail
cd "$(dirname "$0")/.."

env -u ZELK_LOG_SERVICE node examples/tour.mjs

if [ ! -x build/release/zelk-log-service ]; then
    echo "The tour over D-Bus is left out: this build has no zelk-log-service (libsystemd-dev was missing)."
    exit 0
fi
./scripts/with_service.sh node examples/tour.mjs
