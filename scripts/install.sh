#!/usr/bin/env bash
# Installs what `make build` has built, or removes what was installed:
#
#   PREFIX=/usr/local [DESTDIR=…] scripts/install.sh install|uninstall
#
# When root runs it, the service is also available on the system bus: the service's user and the bus's policy take
# effect at once, unless DESTDIR is set.
#
# All files are put together in a temporary folder and then copied. What was installed is in a list, one path per line
# and without DESTDIR: files, and the folders that were made for them, with a slash at the end. The list is written
# before anything else, so that an install that broke off can be removed too.
set -euo pipefail
umask 022
export LC_ALL=C.UTF-8
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
PREFIX=$(realpath --canonicalize-missing --no-symlinks -- "$PREFIX")
DESTDIR=${DESTDIR:-}
own=${PREFIX%/}/lib/zelklogservice
list=$DESTDIR$own/installed.txt

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
        systemd-sysusers "$PWD/service/dbus/data/zelklog.sysusers.conf"
    else
        useradd --system --user-group --no-create-home --shell /usr/sbin/nologin zelklog
    fi
}

# name_staged STAGE OLD: prints the list for what is in STAGE. A folder that was there before stays when everything is
# removed, unless it is the package's own or OLD, an earlier list, has it.
name_staged() {
    local path place
    find "$1" -mindepth 1 \( -type d -printf '/%P/\n' \) -o -printf '/%P\n' | sort | while IFS= read -r path; do
        place=$DESTDIR${path%/}
        case $path in
            */)
                if [ -d "$place" ]; then
                    [[ $path = "$own"/* ]] || grep -aqxF -- "$path" "$2" || continue
                elif [ -e "$place" ] || [ -L "$place" ]; then
                    fail "$place is not a folder: move it away, or choose another PREFIX"
                fi
                ;;
        esac
        printf '%s\n' "$path"
    done
}

# write_list FILE…: the list is what the files hold together. It is replaced as a whole, because one that was cut short
# would not name everything.
write_list() {
    mkdir -p "${list%/*}" && sort -u "$@" >"$list.new" && mv -f "$list.new" "$list"
}

# put STAGE PATH: a running program keeps the file that it was started from.
put() {
    case $2 in
        */) mkdir -p "$DESTDIR$2" ;;
        *) cp -PT --remove-destination "$1$2" "$DESTDIR$2" ;;
    esac
}

# Both read lines of a list.
remove_files() {
    local path
    while IFS= read -r path; do
        [ -d "$DESTDIR$path" ] || rm -f "$DESTDIR$path"
    done
}

# The innermost first. One that contains something else stays.
remove_folders() {
    local path
    sort -r | while IFS= read -r path; do
        case $path in */) rmdir "$DESTDIR$path" 2>/dev/null || true ;; esac
    done
}

install_all() {
    local program path
    for program in zelk-log-service zelklogservice.node zelklog.1; do
        [ -e "build/release/$program" ] || fail "build/release/$program does not exist: run \`make build\` first, without sudo"
    done
    work=$(mktemp -d)
    trap 'rm -rf "$work"' EXIT
    export ZELK_DESTDIR=$DESTDIR
    DESTDIR=$work/stage cmake --install build/release --prefix "$PREFIX" >/dev/null ||
        fail "the files could not be put together in $work"
    touch "$work/old"
    [ ! -e "$list" ] || sort "$list" >"$work/old"
    name_staged "$work/stage" "$work/old" >"$work/new"
    comm -23 "$work/old" "$work/new" >"$work/obsolete"

    make_user # Before the bus reads a policy that names it.
    if ! write_list "$work/old" "$work/new"; then
        rm -f "$list.new"
        remove_folders <"$work/new"
        fail 'that failed, and nothing was installed'
    fi
    while IFS= read -r path; do
        put "$work/stage" "$path" ||
            fail "that failed halfway: \`make uninstall\` with the same settings removes what is there"
    done <"$work/new"
    remove_files <"$work/obsolete"
    remove_folders <"$work/obsolete"
    write_list "$work/new"
    tell_system
    echo "Installed below $DESTDIR$PREFIX"
}

uninstall_all() {
    local names
    [ -e "$list" ] || fail "nothing is installed below $DESTDIR$PREFIX"
    names=$(<"$list")
    remove_files <<<"$names"
    rm -f "$list" "$list.new"
    remove_folders <<<"$names"
    tell_system
    echo "Removed from $DESTDIR$PREFIX"
}

case ${1:-} in
    install) install_all ;;
    uninstall) uninstall_all ;;
    *) fail "usage: scripts/install.sh install|uninstall" ;;
esac
