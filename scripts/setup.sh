#!/usr/bin/env bash
# Installs what the named groups need and this machine lacks, and nothing else:
#
#   scripts/setup.sh [build] [test] [lint] [bench] [fuzz]
#
# Meant for Debian 12, as root or with sudo. When nothing is missing it only looks, and needs no network.
set -euo pipefail
cd "$(dirname "$0")/.."

OLDEST_NODE=18

packages_of() {
    case $1 in
        build) echo cmake ninja-build g++ pkg-config libjsoncpp-dev libsystemd-dev ;;
        test) echo libgtest-dev dbus systemd python3-dbus python3-gi ;;
        lint) echo clang clang-format clang-tidy generate-ninja ;;
        bench) echo binutils dbus libspdlog-dev rapidjson-dev ;;
        fuzz) echo clang libclang-rt-14-dev ;;
        *)
            echo "scripts/setup.sh: unknown group '$1': use build, test, lint, bench or fuzz" >&2
            return 1
            ;;
    esac
}

# Node.js may have come from elsewhere than Debian, so the programs are asked rather than the packages.
has_node() {
    node -e "process.exit(parseInt(process.versions.node, 10) < $OLDEST_NODE ? 1 : 0)" 2>/dev/null
}

missing_node_packages() {
    has_node || echo nodejs
    command -v npm >/dev/null || echo npm
}

missing_packages() {
    local package
    for package in "$@"; do
        if [ "$(dpkg-query -W -f '${db:Status-Status}' "$package" 2>/dev/null)" != installed ]; then
            echo "$package"
        fi
    done
}

install_packages() {
    echo "Installing $*"
    if ! command -v apt-get >/dev/null; then
        echo "scripts/setup.sh: this is not Debian: install what corresponds to its packages $*" >&2
        return 1
    fi
    local as_root=()
    if [ "$(id -u)" -ne 0 ]; then
        if ! command -v sudo >/dev/null; then
            echo "scripts/setup.sh: run as root, or install sudo: missing packages $*" >&2
            return 1
        fi
        as_root=(sudo)
    fi
    "${as_root[@]}" apt-get update -qq
    "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends "$@"
}

wanted=()
for group in build "$@"; do
    packages=$(packages_of "$group")
    read -ra names <<<"$packages"
    wanted+=("${names[@]}")
done

mapfile -t missing < <(missing_packages "${wanted[@]}" | sort -u; missing_node_packages)
if [ "${#missing[@]}" -gt 0 ]; then
    install_packages "${missing[@]}"
    if ! has_node; then
        echo "scripts/setup.sh: $(command -v node) is older than Node.js $OLDEST_NODE: put a newer one first in PATH" >&2
        exit 1
    fi
fi

# npm keeps its own list of what it installed there.
if [ ! -e node_modules/.package-lock.json ] || [ package-lock.json -nt node_modules/.package-lock.json ]; then
    npm ci --ignore-scripts
fi
