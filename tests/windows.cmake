# SPDX-License-Identifier: MIT
# Nobody packages the test library for this compiler: it is built from its sources.
set(OVKS_GOOGLETEST "" CACHE PATH "Folder of the sources of GoogleTest")
set(BUILD_GMOCK OFF)
set(INSTALL_GTEST OFF)
add_subdirectory("${OVKS_GOOGLETEST}" googletest EXCLUDE_FROM_ALL)
target_compile_options(gtest PRIVATE -w)

# Wine's server outlives the program that starts it by some seconds. Were that a test, it would seem to last as long.
if(CMAKE_CROSSCOMPILING)
  set(OVKS_FIXTURE wine)
  add_test(NAME wine COMMAND sh -c "exec '${OVKS_WINE}' wineboot >/dev/null 2>&1")
  set_tests_properties(wine PROPERTIES FIXTURES_SETUP wine)
endif()
