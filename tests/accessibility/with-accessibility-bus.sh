#!/usr/bin/env bash
# Runs a command on a session bus of its own with the accessibility bus of at-spi2-core beside it,
# and returns its exit code. Programs with windows announce themselves there as on a desktop where
# a screen reader runs.
# Usage: tests/accessibility/with-accessibility-bus.sh command [argument ...]
set -euo pipefail
[ $# -gt 0 ] || { echo "usage: $0 command [argument ...]" >&2; exit 2; }
service=/usr/share/dbus-1/services/org.a11y.Bus.service
[ -r "$service" ] && command -v dbus-run-session dbus-send >/dev/null || {
    echo "$0: at-spi2-core or dbus is not installed" >&2
    exit 2
}

dir=$(mktemp -d)
session=
cleanup() {
    trap - EXIT
    if [ -n "$session" ]; then
        kill "$session" 2>/dev/null || true
        wait "$session" 2>/dev/null || true
    fi
    rm -rf "$dir"
}
trap cleanup EXIT
trap 'exit 143' TERM
trap 'exit 130' INT

# Where the bus puts its socket. The address belongs to this bus, not to one that is there already.
export XDG_RUNTIME_DIR="$dir"
unset AT_SPI_BUS_ADDRESS DBUS_SESSION_BUS_ADDRESS
export QT_LINUX_ACCESSIBILITY_ALWAYS_ON=1

# Asking for the address starts the accessibility bus; it ends with the session bus. What the
# daemons say goes with the directory, unless they do not start. In the background, so that a
# signal to this script ends the command as well.
dbus-run-session -- bash -c '
    log=$1; shift
    dbus-send --session --print-reply --reply-timeout=20000 --dest=org.a11y.Bus /org/a11y/bus \
        org.a11y.Bus.GetAddress >>"$log" 2>&1 || { cat "$log" >&2; exit 2; }
    exec "$@" 2>&3' accessibility-session "$dir/log" "$@" 3>&2 2>>"$dir/log" &
session=$!
code=0
wait "$session" || code=$?
exit "$code"
