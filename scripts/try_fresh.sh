#!/usr/bin/env bash
# Tries the two commands of the README as a new user would: `make demo` and `make test` on a fresh minimal Debian, first
# as root, then on another fresh one as a normal user with sudo, in a checkout whose path has unusual characters. Then
# the service is installed and called on the system bus, and both commands run again without a network. Finally the
# release's other compilers build everything.
#
#   scripts/try_fresh.sh 12|13 [root|user]
#
# Needs root, debootstrap, and about 3 GB. The minimal system is kept in build/fresh for the next trial, as is the
# output of the trial. apt and npm get packages from the same sources as on this machine.
set -euo pipefail
cd "$(dirname "$0")/.."

fail() {
    echo "scripts/try_fresh.sh: $*" >&2
    exit 1
}

case ${1:-} in
    12) release=bookworm compilers='clang++-14 clang++-16' ;;
    13) release=trixie compilers=clang++-19 ;;
    *) fail "usage: scripts/try_fresh.sh 12|13 [root|user]" ;;
esac
users=${2:-root user}
[ "$(id -u)" -eq 0 ] || fail "run as root: it makes a Debian system in a folder"
command -v debootstrap >/dev/null || fail "no debootstrap: run \`apt-get install debootstrap\`"

# Everything that is mounted or started here goes away with this process, however it ends.
if [ -z "${ZELK_FRESH_INSIDE:-}" ]; then
    exec env ZELK_FRESH_INSIDE=1 unshare --mount --pid --fork --kill-child --mount-proc "$0" "$@"
fi

mkdir -p build/fresh
work=$PWD/build/fresh
minimal=$work/debian-$1.tar
mirror=$(apt-get indextargets --format '$(ORIGIN) $(REPO_URI)' | awk '$1 == "Debian" && !/security/ { print $2; exit }')

if [ ! -e "$minimal" ]; then
    echo "Making a minimal Debian $1"
    rm -rf "$work/new"
    debootstrap --variant=minbase "$release" "$work/new" ${mirror:+"$mirror"} >"$work/debootstrap-$1.log" 2>&1 ||
        fail "that failed: see $work/debootstrap-$1.log"
    tar -C "$work/new" --exclude='./dev/*' --exclude='./var/cache/apt/archives/*.deb' -cf "$minimal.new" .
    mv "$minimal.new" "$minimal"
    rm -rf "$work/new"
fi

# Creates a fresh system in $system, with the network, the proxies and the certificates of this machine.
make_system() {
    rm -rf --one-file-system "$system"
    mkdir -p "$system"
    tar -C "$system" -xf "$minimal"
    cp /etc/resolv.conf /etc/hosts "$system/etc/"
    apt-config dump | grep -iE '^Acquire::(https?::Proxy|Check-)' >"$system/etc/apt/apt.conf.d/90machine" || true
    mount -t proc proc "$system/proc"
    mount -t sysfs -o ro sysfs "$system/sys"
    mount -t tmpfs -o mode=755 dev "$system/dev"
    mkdir "$system/dev/pts" "$system/dev/shm"
    mount -t devpts -o newinstance,ptmxmode=666 devpts "$system/dev/pts"
    mount -t tmpfs shm "$system/dev/shm"
    ln -s pts/ptmx "$system/dev/ptmx"
    ln -s /proc/self/fd "$system/dev/fd"
    local device
    for device in 'null 1 3' 'zero 1 5' 'full 1 7' 'random 1 8' 'urandom 1 9' 'tty 5 0'; do
        # shellcheck disable=SC2086 # Three words.
        set -- $device
        mknod -m 666 "$system/dev/$1" c "$2" "$3"
    done
}

# How npm on this machine reaches its registry, as settings of the environment.
npm_settings() {
    local key value
    command -v npm >/dev/null || return 0
    for key in registry proxy https-proxy cafile; do
        value=$(cd / && npm config get "$key" 2>/dev/null)
        case $value in '' | null | undefined) continue ;; esac
        if [ "$key" = cafile ]; then
            cp "$value" "$system/etc/machine-certificates.pem"
            value=/etc/machine-certificates.pem
        fi
        echo "npm_config_${key//-/_}=$value"
    done
}

# Runs a command in the system as the user of this trial, in the checkout; $network is empty or cuts off the network.
inside() {
    # shellcheck disable=SC2016 # The shell inside expands these.
    $network chroot "$system" setpriv --reuid="$uid" --regid="$uid" --init-groups \
        env -i HOME="$home" USER="$user" PATH=/usr/local/sbin:/usr/local/bin:/usr/sbin:/usr/bin:/sbin:/bin TERM=dumb \
        "${settings[@]}" sh -c 'cd "$1" && shift && exec "$@"' sh "$checkout" "$@"
}

step() {
    local log="$work/debian-$release-$user-$1.log"
    shift
    echo "  $* (${network:-with a network})"
    if ! inside "$@" >"$log" 2>&1; then
        tail -n 20 "$log"
        fail "that failed: see $log"
    fi
    if grep -n 'warning:' "$log"; then
        fail "that gave warnings: see $log"
    fi
}

as_root() {
    chroot "$system" "$@" >"$work/prepare.log" 2>&1 || fail "that failed: see $work/prepare.log"
}

# Installs everything, and calls the service, which the system bus starts, as users who may call it and as one who may
# not.
try_installed() {
    local sudo=()
    [ "$user" = root ] || sudo=(sudo)
    as_root apt-get install -y --no-install-recommends dbus
    as_root sh -c 'mkdir -p /run/dbus && dbus-daemon --system'
    step install "${sudo[@]}" make install
    if [ "$user" != root ] && inside find . -user root | grep .; then
        fail "files of root were left in the checkout"
    fi
    as_root useradd --groups zelklog member
    as_root useradd stranger
    local caller answer
    for caller in root member stranger; do
        answer=$(chroot "$system" setpriv --reuid="$caller" --regid=nogroup --init-groups \
            env ZELK_LOG_SERVICE=system /usr/local/bin/zelklog modem on 2>&1) || true
        echo "  $caller on the system bus: $answer"
        case $caller:$answer in
            stranger:accepted) fail "a stranger may call the service" ;;
            *:accepted | stranger:*) ;;
            *) fail "$caller may not call the service" ;;
        esac
    done
    chroot "$system" ps -o user= -C zelk-log-service | grep -qx zelklog || fail "the service does not run as zelklog"
}

for user in $users; do
    system=$work/system
    network=
    echo "Debian $1, as $user"
    make_system
    if [ "$user" = root ]; then
        uid=0 home=/root checkout=/root/zelklogservice
        packages='make'
    else
        uid=1000 home=/home/$user
        checkout="$home/it's \$5 für zelk"
        packages='make sudo'
    fi
    # shellcheck disable=SC2086 # Several words.
    as_root sh -c 'apt-get update && apt-get install -y --no-install-recommends "$@"' sh $packages
    if [ "$user" != root ]; then
        chroot "$system" useradd --create-home --uid "$uid" --shell /bin/bash "$user"
        echo "$user ALL=(ALL) NOPASSWD: ALL" >"$system/etc/sudoers.d/$user"
    fi
    mkdir "$system$checkout"
    git ls-files -z --cached --others --exclude-standard | tar -c --null -T - | tar -x -C "$system$checkout"
    chroot "$system" chown -R "$uid:$uid" "$checkout"
    mapfile -t settings < <(npm_settings)

    before=$(chroot "$system" dpkg-query -W | wc -l)
    step demo make demo
    echo "  the demo installed $(($(chroot "$system" dpkg-query -W | wc -l) - before)) packages"
    step zelklog bin/zelklog modem status
    step test make test
    try_installed
    network='unshare --net'
    step demo-offline make demo
    step test-offline make test
    network=
    if [ "$user" = root ]; then
        # shellcheck disable=SC2086 # Several words.
        as_root apt-get install -y --no-install-recommends ${compilers//++/}
        for compiler in $compilers; do
            step "$compiler" sh -c "cmake -G Ninja -B build/$compiler -DCMAKE_CXX_COMPILER=$compiler && \
                cmake --build build/$compiler"
        done
    fi
    kill "$(cat "$system/run/dbus/pid")" # The service ends with its bus.
    umount --lazy --recursive "$system/dev" "$system/proc" "$system/sys"
    rm -rf --one-file-system "$system"
done
echo "Debian $1: all well"
