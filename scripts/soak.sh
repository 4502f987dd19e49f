#!/bin/sh
# The long reliability tests on the release build: memory over many calls, a log service that is killed again and
# again, a bus whose messages are malformed, and the sweeps of test/sweeps in full. With CI=true, short versions of all
# but the sweeps, whose short versions are part of the tests.
#   scripts/soak.sh [answered calls]
set -eu
cd "$(dirname "$0")/.."

soak() {
    script=test/soak/$1
    shift
    node --expose-gc --max-semi-space-size=1 "$script" "$@"
}

if [ "${CI:-}" = true ]; then
    soak flat.mjs embedded "${1:-100000}"
    ZELK_LOG_SERVICE=none soak keeping.mjs 10000
    soak flat.mjs killed 20000
    soak flat.mjs malformed 600
    exit
fi

soak flat.mjs embedded "${1:-1000000}"
ZELK_LOG_SERVICE=none soak keeping.mjs 50000
soak flat.mjs killed 200000
soak flat.mjs malformed 20000

cmake --build --preset release
export ZELK_FAULT_PAIR_REACH=1000 ZELK_HOSTILE_RUNS=5000 ZELK_ENVIRONMENT_ROUNDS=150 ZELK_SERVICE_FAULT_ROUNDS=20
for test in test/sweeps/*.test.mjs; do
  LIMIT=21600 scripts/js_tests.sh "$test"
done
build/release/dbus_test --gtest_filter=Program.ServesOnWhenClientsReadNothing
