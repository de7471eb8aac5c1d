# SPDX-License-Identifier: MIT
# Nobody packages the test library for this compiler: it is built from its sources.
set(OVKS_GOOGLETEST "" CACHE PATH "Folder of the sources of GoogleTest")
set(BUILD_GMOCK OFF)
set(INSTALL_GTEST OFF)
add_subdirectory("${OVKS_GOOGLETEST}" googletest EXCLUDE_FROM_ALL)
