#!/bin/bash
# SPDX-License-Identifier: MIT
# VersionTest.sh SOURCE PACKAGING VERSION SIMULATOR: one version and one date everywhere, and CMakeLists.txt
# is the only source that the version is written in. CHANGELOG.md names it as what was released last.
# shellcheck source-path=SCRIPTDIR
set -u
. "$(dirname "$0")/expect.sh"
source=$1
packaging=$2
version=$3
simulator=$4

release=$(sed -n 's/^## \[\([0-9].*\)\] - \(.*\)$/\1 \2/p' "$source/CHANGELOG.md" | head --lines 1)
date=${release#* }
expect_equal "CHANGELOG.md ends with this version" "$version $date" "$release"
expect "its date is one" date --date "$date" +%F
expect_equal "the simulator says so" "vx440-simulator $version" "$("$simulator" --version)"
for page in vx440-access.1 vx440-simulator.1; do
    expect "$page says so" grep --quiet "^\.TH .* \"$date\" \"VX440 access application $version\" " \
        "$packaging/$page"
done
expect "the software centre's data say so" \
    contains "$(cat "$packaging/example.vx440.access.metainfo.xml")" "<release version=\"$version\" date=\"$date\"/>"
expect "Debian's changelog says so" \
    grep --quiet "^vx440-access ($version-1) " <<<"$("$source/scripts/lib/debian-changelog")"
expect_equal "no other source has the version in it" "" \
    "$(grep --recursive --files-with-matches --word-regexp --fixed-strings "$version" \
        --include='*.cpp' --include='*.h' --include='*.in' --include='*.nsi' --include='*.sh' \
        --include=CMakeLists.txt --include='*.cmake' --exclude-dir='build*' --exclude-dir='.*' "$source" |
        grep --invert-match --line-regexp --fixed-strings "$source/CMakeLists.txt")"
