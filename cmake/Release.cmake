# SPDX-License-Identifier: MIT
# When this version was released, as CHANGELOG.md tells: VX440_RELEASE_DATE. The version itself is written
# in project() and goes from there to all else.
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/CHANGELOG.md)
file(STRINGS ${PROJECT_SOURCE_DIR}/CHANGELOG.md heading REGEX "^## \\[${PROJECT_VERSION}\\] - [0-9-]+$")
if(NOT heading)
    message(FATAL_ERROR "CHANGELOG.md has no heading \"## [${PROJECT_VERSION}] - DATE\"")
endif()
string(REGEX REPLACE ".* " "" VX440_RELEASE_DATE "${heading}")
