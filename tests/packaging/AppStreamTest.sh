#!/bin/bash
# SPDX-License-Identifier: MIT
# AppStreamTest.sh SOURCE PACKAGING: what a software centre shows of the tool.
# shellcheck source-path=SCRIPTDIR
set -u
. "$(dirname "$0")/expect.sh"
source=$1
data=$2/example.vx440.access.metainfo.xml

skip_without appstreamcli
expect "the data are valid" appstreamcli validate --no-net "$data"
# element NAME: the texts of this element, one a line.
element() { sed -n "s|.*<$1[^>]*>\(.*\)</$1>.*|\1|p" "$data"; }
expect "they are about the installed desktop entry" \
    [ -e "$source/packaging/$(element launchable)" ]
expect "there are pictures" [ -n "$(element image)" ]
while read -r width height url; do
    picture=$source/docs/pictures/${url##*/docs/pictures/}
    # Width and height stand in bytes 16 to 23 of a PNG.
    expect_equal "$url has the size that is told" "$(printf '%08x%08x' "$width" "$height")" \
        "$(od --address-radix=n --format=x1 --skip-bytes=16 --read-bytes=8 "$picture" | tr --delete ' \n')"
done < <(sed -n 's|.*<image.* width="\(.*\)" height="\(.*\)">\(.*\)</image>|\1 \2 \3|p' "$data")
