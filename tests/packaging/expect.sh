# SPDX-License-Identifier: MIT
# For the test scripts that source this: each expectation is a sentence and what must be so. The script
# says which do not hold, and ends with 1 when there are any; 77 stands for a skipped test.
# shellcheck shell=bash

failures=0
trap 'code=$?; [ $failures -eq 0 ] || code=1; exit $code' EXIT

# expect SENTENCE COMMAND...
expect() {
    local sentence=$1
    shift
    if "$@"; then
        echo "PASS   $sentence"
    else
        echo "FAIL   $sentence"
        failures=$((failures + 1))
    fi
}

# expect_equal SENTENCE EXPECTED ACTUAL
expect_equal() {
    expect "$1" [ "$2" = "$3" ]
    [ "$2" = "$3" ] || printf '       expected: %s\n       actual:   %s\n' "$2" "$3"
}

# contains TEXT WORDS
contains() { grep --quiet --fixed-strings -- "$2" <<<"$1"; }

skip_without() {
    command -v "$1" >/dev/null || { echo "SKIP   $1 is not installed"; exit 77; }
}
