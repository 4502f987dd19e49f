#!/usr/bin/env bash
# Installs the packages that the named groups need and this machine lacks, and nothing else:
#
#   scripts/setup.sh GROUP…          build, demo, test, lint, bench, picture, fuzz, device, arm, pack, runners
#
# For Debian 12 and 13, as root or with sudo. When nothing is missing it only checks, and needs no network.
set -euo pipefail
cd "$(dirname "$0")/.."

OLDEST_NODE=18
LOG=build/setup.log

fail() {
    echo "scripts/setup.sh: $*" >&2
    exit 1
}

packages_of() {
    case $1 in
        build) echo cmake ninja-build g++ pkgconf libjsoncpp-dev libsystemd-dev ;;
        demo) echo dbus-daemon ;;
        test) echo libgtest-dev dbus-daemon systemd python3-dbus python3-gi python3-dbusmock ;;
        lint) echo clang clang-format clang-tidy generate-ninja shellcheck ;;
        bench) echo binutils dbus-daemon libspdlog-dev rapidjson-dev ;;
        picture) echo gnuplot-nox ;;
        fuzz) echo clang "libclang-rt-$(. /etc/os-release; [ "${VERSION_ID:-}" != 12 ] || echo 14-)dev" ;;
        device) echo clang lld libc++-dev libc++abi-dev googletest dpkg-dev ;;
        arm) echo g++-aarch64-linux-gnu g++-arm-linux-gnueabihf qemu-user dpkg-dev ;;
        pack)
            local other=''
            case "$(. /etc/os-release; echo "$ID ${VERSION_ID:-}") $(uname -m)" in
                'debian 12 x86_64') other='dpkg-dev g++-aarch64-linux-gnu' ;;
                'debian 12 aarch64') other='dpkg-dev g++-x86-64-linux-gnu' ;;
            esac
            echo "$other dbus-daemon systemd python3-dbus python3-gi python3-dbusmock"
            ;;
        runners) ;;
        *) fail "unknown group '$1': use build, demo, test, lint, bench, picture, fuzz, device, arm, pack or runners" ;;
    esac
}

# A package of another architecture, such as a cross-compiler's library, does not count.
missing_packages() {
    local native installed
    if ! command -v dpkg >/dev/null; then
        echo "This is not Debian: assuming that the equivalents of these packages are installed: $*" >&2
        return
    fi
    native=$(dpkg --print-architecture)
    installed=$({ dpkg-query -W -f '${Package} ${Architecture} ${db:Status-Status}\n' "$@" 2>/dev/null || true; } |
        awk -v native="$native" '$3 == "installed" && ($2 == native || $2 == "all") { print $1 }')
    grep -vxF "${installed:- }" < <(printf '%s\n' "$@" | sort -u) || true
}

# Node.js and npm need not have come from Debian, so the programs are asked rather than the packages.
has_node() {
    node -e "process.exit(parseInt(process.versions.node, 10) < $OLDEST_NODE ? 1 : 0)" 2>/dev/null
}

has_npm() {
    command -v npm >/dev/null
}

# Runs a command with its output in a file, whose name is shown if the command fails.
quietly() {
    echo "$1"
    shift
    mkdir -p build
    "$@" >"$LOG" 2>&1 </dev/null || fail "that failed: see $PWD/$LOG"
}

install_packages() {
    local as_root=()
    if [ "$(id -u)" -ne 0 ]; then
        command -v sudo >/dev/null || fail "run as root, or install sudo: missing packages $*"
        sudo -v # Asks for the password, if it must, before its output goes to a file.
        as_root=(sudo)
    fi
    quietly "Installing Debian packages: $*" "${as_root[@]}" sh -c \
        'apt-get update && DEBIAN_FRONTEND=noninteractive apt-get install -y --no-remove --no-install-recommends "$@"' \
        apt-get "$@"
}

install_npm_packages() {
    quietly "Installing the npm packages of package-lock.json" npm ci --ignore-scripts
    cp package-lock.json node_modules/.installed-lock.json
}

# CMake and Ninja cannot express these.
case $PWD in
    *[\"\;\\]* | *'${'* | *$'\n'*)
        fail 'the path of this checkout has a ", a ;, a \, a ${ or a line feed in it: move it to another folder'
        ;;
esac

needs_npm=false
wanted=()
for group in "$@"; do
    packages=$(packages_of "$group")
    read -ra names <<<"$packages"
    wanted+=("${names[@]}")
    case $group in test | bench | pack | runners) needs_npm=true ;; esac
done

has_node || wanted+=(nodejs)
if ! has_npm; then
    if $needs_npm; then
        wanted+=(npm)
    else
        # Two Debian packages are enough to build and to run the module; npm would pull in hundreds.
        wanted+=(libnode-dev node-commander)
    fi
fi

mapfile -t missing < <(missing_packages "${wanted[@]}")
if [ "${#missing[@]}" -gt 0 ]; then
    install_packages "${missing[@]}"
fi
has_node || fail "$(command -v node || echo node) is older than Node.js $OLDEST_NODE: put a newer one first in PATH"

if has_npm && ! cmp -s package-lock.json node_modules/.installed-lock.json; then
    install_npm_packages
fi
