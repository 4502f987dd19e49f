#!/usr/bin/env bash
# Unpacks packages of another architecture, with all that they depend on, and prints the folder that has them:
#
#   scripts/debian_sysroot.sh ARCHITECTURE PACKAGE...
#
# They are fetched once, and need no network after that. Nothing outside of build/ changes: neither are they installed,
# nor does the machine get another architecture.
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
