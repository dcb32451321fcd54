#!/bin/bash
# SPDX-License-Identifier: MIT
# PortableSourcesTest.sh SOURCE: no source asks for an operating system, but for those in a system's own
# folders: platform/linux and platform/windows, wherever a platform/ stands. Everywhere else
#   - an include between < and > names a header of C++ or of Qt, which have neither a dot nor a slash
#     in their names, as all headers of a system do; minizip's are let pass, which both systems have;
#   - an include between quotes names a file of this tree, or one that is made of it;
#   - no #if, #ifdef, #ifndef or #elif chooses between systems: CMake chooses between folders;
#   - none of the names is used by which a system is told, nor the commoner ones of a single system
#     that come in with a header of C++.
# shellcheck source-path=SCRIPTDIR
set -u
. "$(dirname "$0")/expect.sh"

include='^[[:space:]]*#[[:space:]]*include[[:space:]]*'
minizip='<(unzip|zip)\.h>$'
rules=(
    "$include<[^>]*[./]"
    '^[[:space:]]*#[[:space:]]*(if|ifdef|ifndef|elif)\>'
    '\<(Q_OS_[A-Z0-9]+|Q_WS_[A-Z0-9]+|__linux__|__unix__|_WIN32|_WIN64|__MINGW32__|__MINGW64__)\>'
    '\<SIG(ALRM|CHLD|CONT|HUP|KILL|PIPE|QUIT|STOP|USR1|USR2|XFSZ)\>'
    '\<(clock_gettime|fileno|fork|getpid|getuid|mkstemp|nanosleep|popen|setenv|unsetenv|usleep) ?\('
)

# In the current folder: all sources but those of a system's own.
sources() {
    find . -path './build*' -prune -o -path './.*' -prune -o \
        -path '*/platform/linux/*' -o -path '*/platform/windows/*' -o \
        -type f \( -name '*.cpp' -o -name '*.h' \) -print
}

# The includes between quotes whose file is nowhere.
strange_includes() {
    sources | xargs --no-run-if-empty grep --with-filename --line-number --extended-regexp "$include\"" |
        awk 'NR == FNR { known[$0]; next }
            {
                name = $0
                sub(/[^"]*"/, "", name)
                sub(/".*/, "", name)
                sub(/.*\//, "", name)
                if (!(name in known) && name !~ /^ui_.*\.h$|\.moc$/) print
            }' <(find . -path './build*' -prune -o -name '*.h' -printf '%f\n') -
}

# findings FOLDER: the lines that break a rule, each as FILE:NUMBER:LINE.
findings() (
    cd "$1" || exit
    for rule in "${rules[@]}"; do
        sources | xargs --no-run-if-empty grep --with-filename --line-number --extended-regexp "$rule" |
            grep --invert-match --extended-regexp "$minizip"
    done
    strange_includes
)

expect_equal "no source outside a system's own folders asks for a system" "" "$(findings "$1")"

# The same in a folder of samples.
samples=$(mktemp --directory)
# findings_in FILE LINE: the findings when FILE has this line for its second.
findings_in() {
    mkdir -p "$samples/$(dirname "$1")"
    printf '#include "Here.h"\n%s\n' "$2" >"$samples/$1"
    touch "$samples/link/Here.h"
    findings "$samples"
    rm "$samples/$1"
}
mkdir "$samples/link"
while IFS= read -r line; do
    expect_equal "it finds $line" "./link/Some.cpp:2:$line" "$(findings_in link/Some.cpp "$line")"
done <<'LINES'
#include <sys/socket.h>
#include <unistd.h>
#include <windows.h>
  #  include  <pthread.h>
#include "unistd.h"
#include "sys/socket.h"
#ifdef SOMETHING
#ifndef SOMETHING
#if defined(SOMETHING)
  # elif SOMETHING
const bool linux = __linux__;
const QString name = Q_OS_LINUX;
signal(SIGPIPE, SIG_IGN);
setenv("a", "b", 1);
LINES
while IFS= read -r line; do
    expect_equal "it lets pass $line" "" "$(findings_in link/Some.cpp "$line")"
done <<'LINES'
#include <QString>
#include <cstdint>
#include <csignal>
#include <unzip.h>
#include "link/Here.h"
#include "ui_Some.h"
#include "Some.moc"
#pragma once
#define SOMETHING
process.kill();
qputenv("a", "b");
LINES
line='#include <unistd.h>'
for file in platform/linux/Some.cpp platform/windows/Some.h simulator/platform/linux/Some.cpp build/Some.cpp; do
    expect_equal "it does not look into $file" "" "$(findings_in "$file" "$line")"
done
for file in Some.h platform/Some.cpp link/linux/Some.cpp tests/platform/contract/Some.cpp; do
    expect_equal "it looks into $file" "./$file:2:$line" "$(findings_in "$file" "$line")"
done
rm --recursive "$samples"
