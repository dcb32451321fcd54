#!/bin/bash
# SPDX-License-Identifier: MIT
# TidyHeadersTest.sh SOURCE: clang-tidy looks into every header of ours, as its filter says.
# shellcheck source-path=SCRIPTDIR
set -u
. "$(dirname "$0")/expect.sh"

filter=$(sed -n "s/^HeaderFilterRegex: '\(.*\)'$/\1/p" "$1/.clang-tidy")
expect "there is a filter" [ -n "$filter" ]
expect_equal "no header is left out" "" \
    "$("$1/scripts/lib/sources" c++ | grep '\.h$' | sed 's|^\.|/folder|' |
        grep --invert-match --extended-regexp "$filter")"
expect_equal "a header of Qt is none of ours" "" \
    "$(grep --extended-regexp "$filter" <<</usr/include/x86_64-linux-gnu/qt5/QtCore/qstring.h)"
