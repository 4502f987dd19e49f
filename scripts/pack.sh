#!/usr/bin/env bash
# Makes the npm package, build/pack/zelklogservice-VERSION.tgz, and tries it in an empty folder:
#
#   scripts/pack.sh [--here]
#
# The package holds builds for x64 and arm64 that need nothing but the C and C++ run-time libraries, and libsystemd
# if the log service is on D-Bus. It is built on Debian 12, so that it runs on systems of that age and newer. On any other
# system or processor, or with --here, the package holds this machine's release build, and is for this machine alone.
set -euo pipefail
cd "$(dirname "$0")/.."

pack=$PWD/build/pack
version=$(node -p 'require("./package.json").version')
ARTEFACTS=(zelklogservice.node zelk_testing.node zelk-log-service
    lib{ohos_host,zelk_service_api,zelk_testing_state,zelk_dbus}-"$version".so)
# The newest symbol versions of the run-time libraries that a build may need, those of GCC 11 and glibc 2.34.
NEWEST=(GLIBC_2.34 GLIBCXX_3.4.29 CXXABI_1.3.13)
MOST_BYTES_OF_MODULE=300000
# With these, the parts of jsoncpp that the module does not use are left out.
SECTIONS='-ffunction-sections -fdata-sections'

fail() {
    echo "scripts/pack.sh: $*" >&2
    exit 1
}

# build_for ARCHITECTURE TRIPLET SETTING...: Node.js and GNU have different names for a processor.
build_for() {
    local build=$pack/$1 lib=$pack/lib/linux-$1 triplet=$2 file
    shift 2
    cmake -S . -B "$build" -G Ninja --log-level=WARNING -DCMAKE_BUILD_TYPE=Release -DZELK_BUILD_TESTS=OFF \
        -DZELK_BUILD_COMMAND=OFF -DZELK_STATIC_JSONCPP=ON -DCMAKE_COMPILE_WARNING_AS_ERROR=ON \
        -DCMAKE_CXX_COMPILER="$triplet-g++" -DCMAKE_CXX_FLAGS="$SECTIONS" \
        -DCMAKE_SHARED_LINKER_FLAGS=-Wl,--gc-sections "$@"
    cmake --build "$build" --target zelklogservice zelk_testing zelk_dbus zelk-log-service
    mkdir -p "$lib"
    for file in "${ARTEFACTS[@]}"; do
        "$triplet-strip" --strip-unneeded -o "$lib/$file" "$build/$file"
        check_needs "$lib/$file"
    done
    if [ "$(stat -c %s "$lib/zelklogservice.node")" -ge $MOST_BYTES_OF_MODULE ]; then
        fail "$lib/zelklogservice.node has $MOST_BYTES_OF_MODULE bytes or more"
    fi
}

# Fails if a file needs anything that the package does not promise to need.
check_needs() {
    local file=$1 own="lib(ohos_host|zelk_service_api|zelk_testing_state)-$version\.so" runtime='lib(stdc\+\+|gcc_s|m|c)\.so\.[0-9]+|ld-linux-.*'
    local systemd='' needed newest used
    case $file in */libzelk_dbus-*.so | */zelk-log-service) systemd='|libsystemd\.so\.0' ;; esac
    needed=$(readelf -d "$file" | sed -n 's/.*(NEEDED).*\[\(.*\)\]/\1/p' | grep -vxE "$own|$runtime$systemd" || true)
    [ -z "$needed" ] || fail "$file needs $needed"
    for newest in "${NEWEST[@]}"; do
        used=$(readelf -V "$file" | grep -oE "\<${newest%%_*}_[0-9.]+" | sort -uV | tail -1)
        printf '%s\n' "${used:-$newest}" "$newest" | sort -CV ||
            fail "$file needs $used, which is newer than $newest"
    done
}

# build_foreign ARCHITECTURE TRIPLET: for a processor that this machine does not have.
build_foreign() {
    local sysroot libraries
    sysroot=$(scripts/debian_sysroot.sh "${1/x64/amd64}" libsystemd-dev libstdc++6)
    libraries=$sysroot/usr/lib/$2
    PKG_CONFIG_LIBDIR=$libraries/pkgconfig PKG_CONFIG_SYSROOT_DIR=$sysroot build_for "$1" "$2" \
        -DCMAKE_SYSTEM_NAME=Linux -DCMAKE_SYSTEM_PROCESSOR="${2%%-*}" \
        -DCMAKE_EXE_LINKER_FLAGS="-Wl,-rpath-link,$libraries"
}

build_release() {
    local lib=$pack/lib/linux-$1 file
    scripts/build.sh zelklogservice zelk_testing zelk_dbus zelk-log-service
    mkdir -p "$lib"
    for file in "${ARTEFACTS[@]}"; do
        strip --strip-unneeded -o "$lib/$file" "build/release/$file"
    done
}

case ${1:-} in
    '') system=$(. /etc/os-release && echo "$ID ${VERSION_ID:-}") || system=unknown ;;
    --here) system=here ;;
    *) fail 'usage: scripts/pack.sh [--here]' ;;
esac
rm -rf build/pack/lib build/pack/*.tgz build/pack/commit
here=$(node -p process.arch)
remark=''
case $system-$here in
    'debian 12-x64')
        build_for x64 x86_64-linux-gnu
        build_foreign arm64 aarch64-linux-gnu
        ;;
    'debian 12-arm64')
        build_for arm64 aarch64-linux-gnu
        build_foreign x64 x86_64-linux-gnu
        ;;
    *)
        build_release "$here"
        remark="This package is for this machine's system and processor ($here) alone: the one for everybody is made on Debian 12."
        ;;
esac
scripts/prepack.sh --stamp >"$pack/commit"
npm pack --pack-destination "$pack" --loglevel=error

# As users have it: installed into a folder that does not depend on this one.
user=$(mktemp -d)
trap 'rm -rf "$user"' EXIT
cd "$user"
npm init -y >/dev/null
npm install --offline --no-audit --no-fund --loglevel=error "$pack"/zelklogservice-*.tgz

# Prints one line, and compares it.
expect() {
    local wanted=$1 got
    shift
    got=$("$@")
    [ "$got" = "$wanted" ] || fail "'$*' printed '$got', not '$wanted'"
    echo "ok: $*"
}
cat >try.mjs <<'END'
import whole, { getModemLogStatus } from 'zelklogservice';
import { logService } from 'zelklogservice/testing';
console.log(await getModemLogStatus(), await whole.getRemoteDevicesList());
const service = logService({ GetModemLogStatus: () => true });
console.log(await getModemLogStatus());
service.restore();
END
expect false node -e 'require("zelklogservice").getModemLogStatus(console.log)'
expect $'false {"devices":[]}\ntrue' node try.mjs
expect off npx --no-install zelklog modem status
checkout=$OLDPWD
export ZELK_SERVICE_PROGRAM=$user/node_modules/zelklogservice/lib/linux-$here/zelk-log-service
expect $'accepted\non' "$checkout/scripts/with_service.sh" \
    bash -c 'npx --no-install zelklog tcpdump on && npx --no-install zelklog tcpdump status'

# The pages' commands, by the test that also runs them in the checkout.
cd "$checkout"
ZELK_INSTALLED_IN=$user node --test --test-reporter=dot test/package/docs.test.mjs
npm install --global --prefix "$user/global" --offline --no-audit --no-fund --loglevel=error "$pack"/zelklogservice-*.tgz
expect '.TH ZELKLOG 1' head -c 13 "$user/global/share/man/man1/zelklog.1"

ls -l "$pack"/*.tgz
[ -z "$remark" ] || echo "$remark"
