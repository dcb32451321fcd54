# SPDX-License-Identifier: MIT
# The tool's window as a user has it, in the display of the scripts that source this.
# shellcheck shell=bash

# await_line FILE PATTERN: waits until the file has a line that matches; fails after a minute.
await_line() {
    timeout 60 grep --quiet --max-count 1 --extended-regexp "$2" \
        <(exec tail --follow --lines +1 "$1" 2>/dev/null)
}

# connect_by_mouse ADDRESS: types the address into the window, once it is there, and presses Connect.
connect_by_mouse() {
    local window
    window=$(timeout 60 xdotool search --sync --onlyvisible --name 'VX440 Access Application' | head --lines 1)
    sleep 1 # until it takes clicks
    xdotool mousemove --window "$window" 150 35 click 1
    xdotool key --window 0 ctrl+a key Delete key Home type "$1"
    xdotool mousemove --window "$window" 286 37 click 1
}
