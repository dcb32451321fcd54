#!/bin/bash
# SPDX-License-Identifier: MIT
# shellcheck source-path=SCRIPTDIR
set -u
. "$(dirname "$0")/expect.sh"
pages=$1
simulator=$2

skip_without groff
for page in vx440-access.1 vx440-simulator.1; do
    expect_equal "$page is set without a warning" "" \
        "$(groff -man -Tutf8 -ww -z "$pages/$page" 2>&1)"
    expect_equal "$page is found by what it is" "${page%.1}" \
        "$(lexgrog "$pages/$page" 2>&1 | sed -n 's/.*: "\([^ ]*\) - .*/\1/p')"
done

text=$(groff -man -Tascii -P-cbou "$pages/vx440-simulator.1")
options=$("$simulator" --help | sed -n 's/^  \(-., \)\{0,1\}\(--[a-z-]*\) .*/\2/p')
for option in ${options/--help-all/}; do # Qt's own, which tells nothing about the simulator
    expect "vx440-simulator.1 describes $option" contains "$text" "$option"
done
for fault in $("$simulator" --list-faults); do
    expect "vx440-simulator.1 describes the fault $fault" contains "$text" "       $fault"
done
