#!/bin/sh
# The long tests of reliability on the release build: memory over many calls, and the sweeps of test/js with all that
# they can try. With CI=true a short version of the first; the sweeps' short versions are part of the tests.
#   scripts/soak.sh [answered calls]
set -eu
cd "$(dirname "$0")/.."

if [ "${CI:-}" = true ]; then
  calls=${1:-100000}
  kept=10000
else
  calls=${1:-1000000}
  kept=50000
fi

node --expose-gc --max-semi-space-size=1 bench/soak/answering.mjs "$calls"
ZELK_LOG_SERVICE=none node --expose-gc --max-semi-space-size=1 bench/soak/keeping.mjs "$kept"
if [ "${CI:-}" = true ]; then
  exit
fi

cmake --build --preset release
export ZELK_FAULT_PAIR_REACH=1000 ZELK_HOSTILE_RUNS=5000 ZELK_ENVIRONMENT_ROUNDS=150 ZELK_SERVICE_FAULT_ROUNDS=20
for test in test/js/2[0-9]_*.test.mjs; do
  node --test "$test"
done
