#!/usr/bin/env bash
# Builds targets of the release build:
#
#   scripts/build.sh TARGET…
#
# Warnings are errors, as in `make test`, which then has nothing to rebuild. Where a compiler warns of more than
# those of the tests do, everything is built without this, until the next `make test`.
set -euo pipefail
cd "$(dirname "$0")/.."

configure() {
    cmake --preset release --log-level=WARNING -DZELK_BUILD_COMMAND=ON "$@" >/dev/null
}

build() {
    cmake --build --preset release --target "$@"
}

if [ -e build/release/CMakeCache.txt ]; then
    configure
else
    configure -DCMAKE_COMPILE_WARNING_AS_ERROR=ON
fi
if ! build "$@"; then
    # Only what failed is tried again.
    case $(build "$@" 2>&1 || true) in
        *'[-Werror'*) echo "scripts/build.sh: these are warnings, and errors for tests only: building without" >&2 ;;
        *) exit 1 ;;
    esac
    configure -DCMAKE_COMPILE_WARNING_AS_ERROR=OFF
    build "$@"
fi
