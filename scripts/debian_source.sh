#!/usr/bin/env bash
# Fetches a Debian source package, unpacks it with Debian's changes applied, and prints the folder that contains it:
#
#   scripts/debian_source.sh libjsoncpp
#
# The package is fetched once; later runs need no network. Nothing outside build/ changes.
set -euo pipefail
cd "$(dirname "$0")/.."

package=$1
sources=$PWD/build/debian/source
folder=$sources/$package

if [ ! -d "$folder" ]; then
    if ! command -v dpkg-source >/dev/null; then
        echo "scripts/debian_source.sh: dpkg-source is missing: run 'apt-get install dpkg-dev'" >&2
        exit 1
    fi
    apt=$PWD/build/debian/apt-source
    scripts/private_apt.sh "$apt" "$(dpkg --print-architecture)" >&2
    mkdir -p "$sources"
    fetched=$(mktemp -d "$sources/$package.XXXXXX")
    trap 'rm -rf "$fetched"' EXIT
    # apt-get has verified the files that it fetched; dpkg-source would also ask for the maintainer's own key.
    (cd "$fetched" && "$OLDPWD/scripts/private_apt.sh" "$apt" "$(dpkg --print-architecture)" \
        source --download-only "$package" && dpkg-source --no-check --extract ./*.dsc unpacked) >&2
    mv "$fetched/unpacked" "$folder"
fi
echo "$folder"
