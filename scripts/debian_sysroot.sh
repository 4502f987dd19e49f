#!/usr/bin/env bash
# Unpacks packages of another architecture, with all their dependencies, and prints the folder that contains them:
#
#   scripts/debian_sysroot.sh ARCHITECTURE PACKAGE...
#
# They are fetched once; later runs need no network. Nothing outside build/ changes: the packages are not installed, and
# no foreign architecture is added to the machine.
set -euo pipefail
cd "$(dirname "$0")/.."

architecture=$1
shift
folder=$PWD/build/debian/sysroot-$architecture

if [ "$(cat "$folder/packages" 2>/dev/null)" != "$*" ]; then
    apt=$PWD/build/debian/apt-$architecture
    scripts/private_apt.sh "$apt" "$architecture" install --yes --download-only "$@" >&2
    rm -rf "$folder"
    mkdir -p "$folder"/usr/{bin,lib,sbin}
    ln -s usr/bin usr/lib usr/sbin "$folder"
    for file in "$apt"/cache/archives/*.deb; do
        dpkg-deb --fsys-tarfile "$file" | tar -x --keep-directory-symlink -C "$folder"
    done
    echo "$*" >"$folder/packages"
fi
echo "$folder"
