# SPDX-License-Identifier: MIT
# What makes a mistake in the code harder to use for an attack: guarded stacks and jumps, checked calls of
# the C library, programs at random addresses whose tables cannot be written. A compiler and a linker get
# those flags that they have. The sanitizers do without: they look closer themselves.
include(CheckCXXCompilerFlag)
include(CheckLinkerFlag)
include(CheckPIESupported)

check_pie_supported(LANGUAGES CXX)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)

# vx440_harden(TARGET): gives an interface library the flags.
function(vx440_harden target)
    set(compiler_flags -fstack-protector-strong -fcf-protection)
    if(NOT VX440_SYSTEM STREQUAL "windows")
        # For Windows, gcc touches each page of a stack anyway, and gcc 12 crashes with this flag.
        list(APPEND compiler_flags -fstack-clash-protection)
    endif()
    foreach(flag IN LISTS compiler_flags)
        string(MAKE_C_IDENTIFIER VX440_COMPILER_HAS${flag} has_flag)
        check_cxx_compiler_flag("-Werror ${flag}" ${has_flag})
        if(${has_flag})
            target_compile_options(${target} INTERFACE ${flag})
            target_link_options(${target} INTERFACE ${flag}) # some bring a library of the compiler's
        endif()
    endforeach()
    foreach(flag IN ITEMS -z,relro -z,now -z,noexecstack --dynamicbase --nxcompat --high-entropy-va)
        string(MAKE_C_IDENTIFIER VX440_LINKER_HAS${flag} has_flag)
        check_linker_flag(CXX -Wl,${flag} ${has_flag})
        if(${has_flag})
            target_link_options(${target} INTERFACE -Wl,${flag})
        endif()
    endforeach()
    # Only an optimising compiler finds the sizes that these checks go by.
    target_compile_options(${target} INTERFACE
        "$<$<CONFIG:Release,RelWithDebInfo,MinSizeRel>:-U_FORTIFY_SOURCE;-D_FORTIFY_SOURCE=2>")
endfunction()
