#!/bin/bash
# SPDX-License-Identifier: MIT
# LicenceLinesTest.sh SOURCE: every source says its licence.
# shellcheck source-path=SCRIPTDIR
set -u
. "$(dirname "$0")/expect.sh"

expect_equal "no source lacks its SPDX line" "" "$("$1/scripts/lib/licence-lines")"
