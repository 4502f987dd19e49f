#!/usr/bin/env bash
# Installs what `make build` has built, or removes what was installed:
#
#   PREFIX=/usr/local [DESTDIR=…] scripts/install.sh install|uninstall
#
# When root runs it, the service is also available on the system bus: the service's user and the bus's policy take
# effect at once, unless DESTDIR is set.
set -euo pipefail
umask 022
cd "$(dirname "$0")/.."

fail() {
    echo "scripts/install.sh: $*" >&2
    exit 1
}

case $PREFIX in
    *[\"\;\\]* | *'${'* | *$'\n'*) fail 'PREFIX has a ", a ;, a \, a ${ or a line feed in it: choose another' ;;
    /*) ;;
    *) fail "PREFIX=$PREFIX: give the whole path" ;;
esac
DESTDIR=${DESTDIR:-}
list=$DESTDIR$PREFIX/lib/zelklogservice/installed.txt

tell_system() {
    if [ "$(id -u)" -ne 0 ] || [ -n "$DESTDIR" ]; then
        return
    fi
    if [ -e /run/systemd/system ]; then
        systemctl daemon-reload
    fi
    if [ -S /run/dbus/system_bus_socket ]; then
        dbus-send --system --print-reply --dest=org.freedesktop.DBus / org.freedesktop.DBus.ReloadConfig >/dev/null
    fi
}

make_user() {
    if [ "$(id -u)" -ne 0 ] || [ -n "$DESTDIR" ] || getent passwd zelklog >/dev/null; then
        return
    fi
    if command -v systemd-sysusers >/dev/null; then
        systemd-sysusers "$PWD/host/dbus/data/zelklog.sysusers.conf"
    else
        useradd --system --user-group --no-create-home --shell /usr/sbin/nologin zelklog
    fi
}

install_all() {
    local program
    for program in zelk-log-service zelklogservice.node zelklog.1; do
        [ -e "build/release/$program" ] || fail "build/release/$program does not exist: run \`make build\` first, without sudo"
    done
    make_user # Before the bus reads a policy that names it.
    local log
    log=$(mktemp)
    DESTDIR=$DESTDIR cmake --install build/release --prefix "$PREFIX" >"$log" || fail "that failed: see $log"
    grep -hE '^Note: ' "$log" || true
    rm "$log"
    mv build/release/install_manifest.txt "$list"
    tell_system
    echo "Installed below $DESTDIR$PREFIX"
}

uninstall_all() {
    local file
    [ -e "$list" ] || fail "nothing is installed below $DESTDIR$PREFIX"
    while IFS= read -r file || [ -n "$file" ]; do
        rm -f "$DESTDIR$file"
    done <"$list"
    rm "$list"
    find "$DESTDIR$PREFIX/lib/zelklogservice" -depth -type d -empty -delete
    tell_system
    echo "Removed from $DESTDIR$PREFIX"
}

case ${1:-} in
    install) install_all ;;
    uninstall) uninstall_all ;;
    *) fail "usage: scripts/install.sh install|uninstall" ;;
esac
