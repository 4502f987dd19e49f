#!/usr/bin/env bash
# Runs a command on a private bus with its own log service, and ends both with the command:
#
#   scripts/with_service.sh COMMAND [ARGUMENT…]
#
# The service is that of the release build, or of the build that ZELKLOGSERVICE_BUILD names, or the program
# ZELK_SERVICE_PROGRAM. The command finds the service's process id in ZELK_SERVICE_PID.
set -euo pipefail

if [ -z "${ZELK_PRIVATE_BUS:-}" ]; then
    exec env ZELK_PRIVATE_BUS=1 dbus-run-session --config-file="$(dirname "$0")/private_bus.conf" -- "$0" "$@"
fi

unset ZELK_PRIVATE_BUS # The command may run this script again for another bus.

build=$(dirname "$0")/../build/${ZELKLOGSERVICE_BUILD:-release}
"${ZELK_SERVICE_PROGRAM:-$build/zelk-log-service}" --session &
service=$!
trap 'kill "$service" 2>/dev/null || true; wait "$service" || true' EXIT

has_owner() {
    dbus-send --session --print-reply=literal --dest=org.freedesktop.DBus / org.freedesktop.DBus.NameHasOwner \
        string:dev.zelk.LogService
}
while [[ $(has_owner) != *true* ]]; do
    if ! kill -0 "$service" 2>/dev/null; then
        echo "scripts/with_service.sh: the log service has ended" >&2
        exit 1
    fi
    sleep 0.05
done
ZELK_LOG_SERVICE=session ZELK_SERVICE_PID=$service "$@"
