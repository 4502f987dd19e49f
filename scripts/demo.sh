#!/usr/bin/env bash
# Shows the tour twice: with the log service inside the process, then with the service as a process on a private bus.
set -euo pipefail
cd "$(dirname "$0")/.."

env -u ZELK_LOG_SERVICE node examples/tour.mjs
./scripts/with_service.sh node examples/tour.mjs
