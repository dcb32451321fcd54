# SPDX-License-Identifier: MIT
# Adds to a program for Windows what is not code.

# vx440_describe_for_windows(TARGET DESCRIPTION): gives a program its icon, its version and its manifest.
function(vx440_describe_for_windows target description)
    set(packaging ${PROJECT_SOURCE_DIR}/packaging/windows)
    set(VX440_PROGRAM ${target})
    set(VX440_PROGRAM_DESCRIPTION ${description})
    set(VX440_ICON ${PROJECT_SOURCE_DIR}/resources/ZkCrest.ico)
    set(VX440_MANIFEST ${packaging}/program.manifest)
    set(resources ${CMAKE_CURRENT_BINARY_DIR}/${target}.rc)
    configure_file(${packaging}/program.rc.in ${resources} @ONLY)
    set_source_files_properties(${resources} PROPERTIES
        OBJECT_DEPENDS "${VX440_ICON};${VX440_MANIFEST}")
    target_sources(${target} PRIVATE ${resources})
endfunction()
