#!/usr/bin/env bash
# npm runs this before `npm pack` and `npm publish` make the package. It puts the libraries that `make pack` built into
# lib/, if they were built from this commit, and the manual page into man/. Builds and installs nothing.
#
#   scripts/prepack.sh [--stamp]     --stamp prints an identifier of the current state of the sources
set -euo pipefail
cd "$(dirname "$0")/.."

stamp=$({ git rev-parse HEAD && git diff HEAD; } | sha256sum)
if [ "${1:-}" = --stamp ]; then
    echo "$stamp"
elif [ "$(cat build/pack/commit 2>/dev/null)" = "$stamp" ]; then
    rm -rf lib
    cp -r build/pack/lib lib
    mkdir -p man
    node scripts/command_docs.js man/zelklog.1 /dev/null
else
    echo "zelklogservice: the package of these sources is not built: run \`make pack\`" >&2
    exit 1
fi
