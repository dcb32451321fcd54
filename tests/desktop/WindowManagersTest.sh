#!/bin/bash
# SPDX-License-Identifier: MIT
# WindowManagersTest PROGRAM WINDOW_MANAGER: the dialog of an installation stays above the window,
# whatever the user clicks and whichever way the window manager closes windows.
set -eu
# shellcheck source=tests/packaging/expect.sh
. "$(dirname "$0")/../packaging/expect.sh"

program=$1
manager=$2
skip_without "$manager"
skip_without xdotool

folder=$(mktemp --directory)
mkfifo "$folder/input" "$folder/output"
pids=()
finish() {
    code=$?
    exec 8>&-
    kill "${pids[@]}" 2>/dev/null || true
    rm -rf "$folder"
    [ $failures -eq 0 ] || code=1
    exit $code
}
trap finish EXIT

# A window manager takes its time. The test's own time limit ends a wait in vain.
await() { until "$@"; do sleep 0.05; done; }
manages_windows() { xprop -root _NET_SUPPORTING_WM_CHECK | grep --quiet 'window id'; }

"$manager" >/dev/null 2>&1 &
pids+=($!)
# What a program shows while a window manager starts may stay unmanaged.
await manages_windows
"$program" <"$folder/input" >"$folder/output" &
pids+=($!)
exec 8>"$folder/input"
read -r window dialog <"$folder/output"
xdotool search --sync --onlyvisible --name 'VX440 Access Application' >/dev/null

numbers_of() { xprop "$@" | grep --only-matching '0x[0-9a-f]*' | while read -r n; do echo $((n)); done; }
stacking() { numbers_of -root _NET_CLIENT_LIST_STACKING | tr '\n' ' '; }
is_above() { [ "$(stacking | sed "s/.*$window .*$dialog .*/above/")" = above ]; }
await is_above
expect_equal "with $manager the dialog belongs to the window" "$window" \
    "$(numbers_of -id "$dialog" WM_TRANSIENT_FOR)"
# A window manager that has moved a window has done all that was asked of it before.
settle() { xdotool windowmove --sync "$window" "$1" 60; }

xdotool mousemove --window "$window" 400 300 click 1 mousemove --window "$window" 20 490 click 1
xdotool windowraise "$window"
settle 50
expect "with $manager it stays above a window that is clicked and raised" is_above
xdotool windowfocus "$dialog" key alt+F4
settle 70
expect "with $manager it is still there when it is closed by a key" is_above
