# SPDX-License-Identifier: MIT
# Starts simulated units in the background, for the scripts that source this. The units end with the script.
# shellcheck shell=bash

# shellcheck disable=SC2034 # for those who source this
simulator=${VX440_SIMULATOR:-$(dirname "${BASH_SOURCE[0]}")/../../build/release/simulator/vx440-simulator}
unit_pids=()
trap end_units EXIT

# start_unit LOG COMMAND...: COMMAND becomes a simulator that writes to LOG. Returns when the unit listens.
# If the unit ends instead, this fails and shows the log.
start_unit() {
    local log=$1
    shift
    : >"$log"
    setpriv --pdeathsig TERM "$@" >"$log" 2>&1 </dev/null &
    unit_pids+=($!)
    if ! tail --pid=$! --lines=+1 --follow "$log" 2>/dev/null | grep --quiet '^ready '; then
        cat "$log" >&2
        return 1
    fi
}

end_units() {
    local pid
    for pid in "${unit_pids[@]}"; do
        kill "$pid" 2>/dev/null || true
        wait "$pid" 2>/dev/null || true
    done
}
