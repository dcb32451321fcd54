#!/bin/bash
# SPDX-License-Identifier: MIT
# shellcheck source-path=SCRIPTDIR
set -u
. "$(dirname "$0")/expect.sh"
in_own_network=$1/in-own-network
without_privileges=$1/without-privileges

"$in_own_network" true || exit

expect_equal "there is the loopback interface and no other" "lo" \
    "$("$in_own_network" ip -brief link | cut --delimiter=' ' --fields=1)"
expect "127.0.0.1 can be reached" contains "$("$in_own_network" ip route get 127.0.0.1)" "dev lo"
expect "no other address can be reached" \
    contains "$("$in_own_network" ip route get 192.168.0.129 2>&1)" "Network is unreachable"
expect "interfaces can be made" "$in_own_network" ip link add name one type veth peer name two
expect "it can be nested" "$in_own_network" "$in_own_network" true
expect "it can be nested in a command without privileges" \
    "$in_own_network" "$without_privileges" "$in_own_network" \
    ip link add name one type veth peer name two
expect "a command without privileges can make no interfaces" \
    contains "$("$in_own_network" "$without_privileges" ip link add name one type veth 2>&1)" \
    "Operation not permitted"
"$in_own_network" sh -c 'exit 5'
expect_equal "the exit code comes back" 5 $?
expect_equal "arguments stay as they are" "a  b|c|" "$("$in_own_network" printf '%s|' "a  b" c)"
