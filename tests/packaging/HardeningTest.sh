#!/bin/bash
# SPDX-License-Identifier: MIT
# HardeningTest.sh BUILD PROGRAM...: what is installed is built as cmake/Hardening.cmake asks for. Each
# program shows it, and for what a program need not show there are the compiler's commands.
# shellcheck source-path=SCRIPTDIR
set -u
. "$(dirname "$0")/expect.sh"
commands=$1/compile_commands.json
shift

skip_without readelf
flags=(-fstack-protector-strong -D_FORTIFY_SOURCE=2 "-O[23]")
case "$(readelf --file-header "$1")" in
    *X86-64*) flags+=(-fstack-clash-protection -fcf-protection) ;;
esac
for flag in "${flags[@]}"; do
    expect_equal "everything is compiled with $flag" "" \
        "$(grep '"command"' "$commands" | grep --invert-match --extended-regexp -- " $flag ")"
done

for program in "$@"; do
    name=$(basename "$program")
    headers=$(readelf --wide --file-header --program-headers --dynamic "$program")
    symbols=$(readelf --wide --dyn-syms "$program")
    expect "$name is loaded at a random address" \
        contains "$headers" "DYN (Position-Independent Executable"
    expect "$name has tables that are closed to writing" contains "$headers" "GNU_RELRO"
    expect "$name fills them at its start" grep --quiet 'FLAGS_1.* NOW' <<<"$headers"
    expect "$name has a stack that cannot be run" grep --quiet 'GNU_STACK.* RW ' <<<"$headers"
    expect "$name guards its stacks" contains "$symbols" " __stack_chk_fail@"
    # The compiler's own files, which begin each program, have two of these.
    case "$headers" in
        *X86-64*)
            expect "$name marks where jumps may lead" \
                [ "$(objdump --disassemble "$program" | grep --count endbr64)" -gt 2 ]
            ;;
    esac
done

# The simulator has no call whose size only shows when it runs. By clang the tool has none either: it
# proves the sizes that gcc leaves to the C library.
if ! grep --quiet 'clang++' "$commands"; then
    expect "$(basename "$1") checks a size when it runs" \
        grep --quiet ' __[a-z]*printf_chk@' <<<"$(readelf --wide --dyn-syms "$1")"
fi
