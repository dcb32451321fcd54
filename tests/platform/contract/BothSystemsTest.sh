#!/bin/bash
# SPDX-License-Identifier: MIT
# BothSystemsTest.sh SOURCE BUILD PROGRAM: builds the contract test for Windows in the folder BUILD, runs
# it under wine, and compares what it finds with what this system's own, PROGRAM, finds.
# shellcheck source-path=SCRIPTDIR
set -u
. "$(dirname "$0")/../../packaging/expect.sh"
source=$1
build=$2
program=$3
check_contract=$(dirname "$0")/check-contract

if [ "$(uname --machine)" != x86_64 ]; then
    echo "SKIP   wine runs programs for this computer's own processor, and they are built for another"
    exit 77
fi
for tool in x86_64-w64-mingw32-g++-posix wine; do
    # On Debian scripts/bootstrap --test installs it: there it has to be there.
    command -v dpkg-query >/dev/null || skip_without "$tool"
    expect "$tool is installed" command -v "$tool"
done
[ $failures -eq 0 ] || exit 1

mkdir -p "$build"
build_for_windows() {
    cmake -S "$source" -B "$build" --preset windows-platform && cmake --build "$build"
}
build_for_windows >"$build/log" 2>&1
expect_equal "it builds for Windows" 0 $?
[ $failures -eq 0 ] || { cat "$build/log"; exit 1; }

"$check_contract" "$program" >"$build/own-results"
expect_equal "this system keeps the contract" 0 $?
# What hangs is ended before ctest ends this script, so that nothing stays behind.
timeout 120 "$check_contract" "$source/scripts/lib/under-wine" "$build/wine" \
    "$build/tests/platform/contract/PlatformContract.exe" >"$build/wine-output"
expect_equal "Windows keeps the contract" 0 $?
tr --delete '\r' <"$build/wine-output" >"$build/windows-results"

echo "Under wine:"
cat "$build/windows-results"
sentences() { sed -n 's/^\(PASS\|FAIL\|OTHER\) *//p' "$1"; }
expect "there are results" [ -n "$(sentences "$build/own-results")" ]
expect_equal "both find the same list of results" \
    "$(sentences "$build/own-results")" "$(sentences "$build/windows-results")"
