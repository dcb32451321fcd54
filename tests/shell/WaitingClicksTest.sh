#!/bin/bash
# SPDX-License-Identifier: MIT
# WaitingClicksTest TOOL SIMULATOR: a user who clicks on Connect twice, and on a page's title while the
# attempt begins, in a display of the test's own.
# shellcheck source-path=SCRIPTDIR
set -Eeu
trap 'echo "Line $LINENO ended with $?: $BASH_COMMAND"' ERR

tool=$1
simulator=$2
command -v xdotool Xvfb >/dev/null || { echo "xdotool or Xvfb is missing."; exit 77; }

folder=$(mktemp --directory)
pids=()
finish() {
    [ ${#pids[@]} -eq 0 ] || kill "${pids[@]}" 2>/dev/null || true
    rm -rf "$folder"
}
trap finish EXIT

# Waits until a file has a line that matches; the test's own time limit ends it otherwise.
await_line() {
    ( tail --follow --lines=+1 "$1" & echo $! >"$folder/tail"; wait ) 2>/dev/null |
        grep --max-count=1 --quiet --extended-regexp "$2"
    kill "$(cat "$folder/tail")" 2>/dev/null || true
}

. "$(dirname "$0")/../desktop/own-display.sh"

setpriv --pdeathsig KILL "$simulator" --address 127.0.0.2 >"$folder/unit.log" &
pids+=($!)
await_line "$folder/unit.log" '^ready'

QT_QPA_PLATFORM=xcb "$tool" &
tool_pid=$!
pids+=("$tool_pid")
window=$(xdotool search --sync --onlyvisible --name 'VX440 Access Application' | head --lines=1)

click() { xdotool mousemove --window "$window" "$1" "$2" click 1; }

click 150 35 # the address
xdotool key --window 0 ctrl+a key Delete key Home type 127.0.0.2
xdotool mousemove --window "$window" 286 37 click 1 click 1 mousemove --window "$window" 340 74 click 1

# While it is busy the program takes no Escape either; then Escape closes the window, behind whatever
# else was waiting.
await_line "$folder/unit.log" '^CF0'
while kill -0 "$tool_pid" 2>/dev/null; do
    xdotool key Escape
    sleep 0.1
done
wait "$tool_pid"
commands=$(grep --extended-regexp '^(\*IDN\?|GET|CF)' "$folder/unit.log" | tr '\n' ' ')
if [ "$commands" != "*IDN? GET:OPTION:INTERNAL? GET:OPTION:DESC? CF0 CF0 CF7 00400000 CF7 004004B0 " ]; then
    echo "The unit took: $commands"
    exit 1
fi
echo "one attempt, one load"
