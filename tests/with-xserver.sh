#!/usr/bin/env bash
# Runs a command in an X server of its own with a window manager, and returns its exit code.
# Usage: tests/with-xserver.sh command [argument ...]
# XSERVER_SCREEN sets another size of the screen, for example 3200x2000x24.
set -euo pipefail
[ $# -gt 0 ] || { echo "usage: $0 command [argument ...]" >&2; exit 2; }
for program in Xvfb openbox; do
    command -v "$program" >/dev/null || { echo "$0: $program is not installed" >&2; exit 2; }
done

dir=$(mktemp -d)
pids=()
cleanup() {
    trap - EXIT
    for ((i = ${#pids[@]} - 1; i >= 0; --i)); do
        kill "${pids[i]}" 2>/dev/null || true
        wait "${pids[i]}" 2>/dev/null || true
    done
    rm -rf "$dir"
}
trap cleanup EXIT
trap 'exit 143' TERM
trap 'exit 130' INT

# Waits until $1 exists and is not empty, as long as the process $2 lives, at most ten seconds.
await() {
    for _ in $(seq 200); do
        [ -s "$1" ] && return 0
        kill -0 "$2" 2>/dev/null || break
        sleep 0.05
    done
    echo "$0: $3 did not start:" >&2
    cat "$dir"/*.log >&2
    exit 2
}

# The server picks a free display itself. The two die with this script even when it is killed.
setpriv --pdeathsig TERM Xvfb -displayfd 3 -screen 0 "${XSERVER_SCREEN:-1600x1000x24}" -nolisten tcp -noreset \
    3>"$dir/display" >"$dir/xvfb.log" 2>&1 &
pids+=($!)
await "$dir/display" $! Xvfb
DISPLAY=":$(tr -d '[:space:]' <"$dir/display")"
export DISPLAY
unset WAYLAND_DISPLAY

# A configuration folder of its own, so that a user's key bindings do not get in the way.
XDG_CONFIG_HOME="$dir" XDG_CACHE_HOME="$dir" XDG_DATA_HOME="$dir" \
    setpriv --pdeathsig TERM openbox --sm-disable --startup "sh -c 'echo up >\"$dir/wm\"'" \
    >"$dir/openbox.log" 2>&1 &
pids+=($!)
await "$dir/wm" $! openbox

# In the background, so that a signal to this script ends the command as well.
"$@" &
pids+=($!)
code=0
wait $! || code=$?
exit "$code"
