#!/bin/bash
# SPDX-License-Identifier: MIT
# shellcheck source-path=SCRIPTDIR
set -u
. "$(dirname "$0")/expect.sh"
lib=$1
export VX440_SIMULATOR=$2

logs=$(mktemp --directory)
demo_network() { "$lib/demo-network" "$logs" -- "$@"; }
demo_network true || exit

# identity ADDRESS: what the unit there says that it is.
cat >"$logs/identity" <<'SCRIPT'
#!/bin/bash
exec 3<>"/dev/tcp/$1/50000"
printf '*IDN?\r' >&3
IFS= read -r -d $'\r' -t 5 answer <&3
echo "$answer"
SCRIPT
# mac ADDRESS: the MAC address behind it, once the system has resolved it.
cat >"$logs/mac" <<'SCRIPT'
#!/bin/bash
echo >"/dev/udp/$1/9"
until entry=$(ip neighbour show "$1" | grep -E 'lladdr|FAILED'); do sleep 0.05; done
grep --only-matching 'lladdr [^ ]*' <<<"$entry"
SCRIPT
chmod +x "$logs/identity" "$logs/mac"

expect_equal "the unit with new firmware is on 192.168.0.129" \
    "ZELMA&KOVINTH,VX440,4400.1290.02/000129,3.10" "$(demo_network "$logs/identity" 192.168.0.129)"
expect_equal "it logs what it takes" "ready 192.168.0.129:50000 *IDN?" \
    "$(grep --invert-match connected "$logs/unit-192.168.0.129.log" | xargs)"
expect_equal "the unit with old firmware is on 192.168.0.130" \
    "ZELMA&KOVINTH,VX440,4400.1290.02/000130,2.50" "$(demo_network "$logs/identity" 192.168.0.130)"

expect_equal "192.168.0.129 has the MAC address of a unit" "lladdr 02:4c:7e:00:01:29" \
    "$(demo_network "$logs/mac" 192.168.0.129)"
expect_equal "192.168.0.130 has the MAC address of a unit" "lladdr 02:4c:7e:00:01:30" \
    "$(demo_network "$logs/mac" 192.168.0.130)"
expect_equal "192.168.0.140 has another" "lladdr 02:1a:3c:00:01:40" \
    "$(demo_network "$logs/mac" 192.168.0.140)"
expect_equal "nobody is on 192.168.0.141" "" "$(demo_network "$logs/mac" 192.168.0.141)"

demo_network sh -c 'exit 5'
expect_equal "the exit code comes back" 5 $?
expect "the command has no privileges" \
    contains "$(demo_network ip link set lan down 2>&1)" "Operation not permitted"
# Only processes of the demo network have the folder of its logs among their open files.
demo_network true
expect_equal "no unit is left" "" \
    "$(find /proc/[0-9]*/fd -lname "$logs/unit-*" 2>/dev/null)"
VX440_SIMULATOR=/bin/false demo_network true
expect_equal "a unit that does not come up is an error" 1 $?

rm --recursive "$logs"
