#!/bin/bash
# SPDX-License-Identifier: MIT
# shellcheck source-path=SCRIPTDIR
set -u
. "$(dirname "$0")/expect.sh"

prefix=$(mktemp --directory)/a\ prefix
cmake --install "$1" --prefix "$prefix" >/dev/null || exit 1
cd "$prefix" || exit 1

for program in bin/vx440-access bin/vx440-simulator libexec/vx440/vx440-access; do
    expect "$program can be run" [ -x "$program" ]
done
for file in share/applications/vx440-access.desktop share/man/man1/vx440-access.1 \
    share/man/man1/vx440-simulator.1 share/metainfo/example.vx440.access.metainfo.xml \
    share/icons/hicolor/scalable/apps/vx440-access.svg; do
    expect "$file is there" [ -s "$file" ]
done
for size in 16 22 24 32 48 64 128 256 512; do
    icon=share/icons/hicolor/${size}x$size/apps/vx440-access.png
    # Width and height stand in bytes 16 to 23 of a PNG.
    expect_equal "$icon has this size" "$(printf '%08x%08x' $size $size)" \
        "$(od --address-radix=n --format=x1 --skip-bytes=16 --read-bytes=8 "$icon" | tr --delete ' \n')"
done

# In the program's place, a script that tells what the launcher gave it.
cat >libexec/vx440/vx440-access <<'SCRIPT'
#!/bin/sh
echo "$PROGRAMDATA|$*"
exit 3
SCRIPT
launch() { env --unset=PROGRAMDATA --unset=XDG_DATA_HOME HOME="$prefix/home" "$@"; }
expect_equal "PROGRAMDATA becomes the user's data folder" "$prefix/home/.local/share|" \
    "$(launch bin/vx440-access)"
expect "the user's data folder is made" [ -d "$prefix/home/.local/share" ]
expect_equal "XDG_DATA_HOME is where the user's data folder is" "$prefix/data|" \
    "$(launch XDG_DATA_HOME="$prefix/data" bin/vx440-access)"
expect_equal "a PROGRAMDATA that is set is left alone" "/some/where|" \
    "$(launch PROGRAMDATA=/some/where bin/vx440-access)"
expect_equal "arguments reach the program" "$prefix/home/.local/share|-style fusion" \
    "$(launch bin/vx440-access -style fusion)"
ln --symbolic "$prefix/bin/vx440-access" link
launch ./link >/dev/null
expect_equal "the exit code comes back, through a link too" 3 $?

# Wireshark reads one folder below /usr. The installed one takes its place, where the system allows it.
if command -v tshark >/dev/null; then
    plugins=$(tshark -G folders 2>/dev/null | sed -n "s|^Global Lua Plugins:[[:space:]]*/usr/||p")
    expect "the dissector is where Wireshark looks" [ -s "$prefix/$plugins/vx440.lua" ]
    # shellcheck disable=SC2016 # for the shell that is started
    ask='mount --bind "$1" "$2" && tshark -G protocols 2>/dev/null | grep --quiet --word-regexp vx440'
    in_mounts_of_its_own() { HOME=$prefix unshare --user --map-root-user --mount "$@"; }
    if in_mounts_of_its_own true 2>/dev/null; then
        expect "Wireshark finds it there" \
            in_mounts_of_its_own sh -c "$ask" - "$prefix/$plugins" "/usr/$plugins"
    fi
fi

rm --recursive "$(dirname "$prefix")"
