#!/usr/bin/env bash
# Makes the npm package from the release build, build/pack/zelklogservice-VERSION.tgz, and tries it in an empty folder.
set -euo pipefail
cd "$(dirname "$0")/.."

root=$PWD
pack=$root/build/pack
stage=$pack/stage
rm -rf "$pack"
mkdir -p "$stage/lib" "$stage/node_modules"

cp -r bin index.d.ts index.js index.mjs library.js requirements.js testing.* LICENSE README.md "$stage"
# What the command line needs comes along, so that the package installs without a network.
cp -r node_modules/commander "$stage/node_modules"
for file in zelklogservice.node libohos_host.so libzelk_service_api.so libzelk_dbus.so zelk_testing.node zelk-log-service; do
    if [ -e "build/release/$file" ]; then
        strip --strip-unneeded -o "$stage/lib/$file" "build/release/$file"
    fi
done

# The libraries inside make the package one for this machine's kind, and leave nothing to build.
node -e '
    const { devDependencies, scripts, ...manifest } = require("./package.json");
    Object.assign(manifest, { cpu: [process.arch], libc: ["glibc"], bundleDependencies: ["commander"] });
    fs.writeFileSync(process.argv[1], JSON.stringify(manifest, null, 2) + "\n");
' "$stage/package.json"
(cd "$stage" && npm pack --pack-destination "$pack" --loglevel=error)

# As its user meets it: installed into a folder that knows nothing of this one.
user=$(mktemp -d)
trap 'rm -rf "$user"' EXIT
cd "$user"
npm init -y >/dev/null
npm install --offline --no-audit --no-fund --loglevel=error "$pack"/zelklogservice-*.tgz

installed=$user/node_modules/zelklogservice/lib
for file in "$installed"/*; do
    if ldd "$file" | grep -E 'not found|lib(ohos_host|zelk_).* => ' | grep -v " => $installed/"; then
        echo "scripts/pack.sh: $file does not find its libraries beside it" >&2
        exit 1
    fi
done

# Prints one line, and compares it.
expect() {
    local wanted=$1 got
    shift
    got=$("$@")
    if [ "$got" != "$wanted" ]; then
        echo "scripts/pack.sh: '$*' printed '$got', not '$wanted'" >&2
        exit 1
    fi
    echo "ok: $*"
}
cat >try.mjs <<'END'
import whole, { getModemLogStatus } from 'zelklogservice';
console.log(await getModemLogStatus(), await whole.getRemoteDevicesList());
END
expect false node -e 'require("zelklogservice").getModemLogStatus(console.log)'
expect 'false {"devices":[]}' node try.mjs
expect off npx --no-install zelklog modem status
if [ -e "$installed/libzelk_dbus.so" ]; then
    export ZELK_SERVICE_PROGRAM=$installed/zelk-log-service
    expect $'accepted\non' "$root/scripts/with_service.sh" \
        bash -c 'npx --no-install zelklog tcpdump on && npx --no-install zelklog tcpdump status'
fi

ls -l "$pack"/*.tgz
