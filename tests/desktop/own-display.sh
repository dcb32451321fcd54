# shellcheck shell=bash
# SPDX-License-Identifier: MIT
# own-display.sh, for scripts to read in: starts a display in the folder $folder, adds its process to $pids
# and names it in DISPLAY. Servers that start at once may choose the same number. One of them then ends, and
# is started again.
mkfifo "$folder/display"
for _ in 1 2 3 4 5 6 7 8; do
    Xvfb -noreset -displayfd 9 -screen 0 1000x700x24 9>"$folder/display" 2>/dev/null &
    display_pid=$!
    DISPLAY=:$(head --lines=1 "$folder/display")
    [ "$DISPLAY" = : ] || break
done
pids+=("$display_pid")
export DISPLAY
