#!/bin/bash
# SPDX-License-Identifier: MIT
# shellcheck source-path=SCRIPTDIR
set -u
. "$(dirname "$0")/expect.sh"
entry=$1/vx440-access.desktop

skip_without desktop-file-validate
expect "the desktop entry is valid, without a hint left" \
    [ -z "$(desktop-file-validate "$entry" 2>&1)" ]
expect "it starts the launcher" grep --quiet --line-regexp 'Exec=vx440-access' "$entry"
expect "its icon is the installed one" grep --quiet --line-regexp 'Icon=vx440-access' "$entry"
