# SPDX-License-Identifier: MIT
# The library as strangers use it: installed into a folder of the build tree, which then is moved.
set(here "${CMAKE_CURRENT_LIST_DIR}")
set(there "${PROJECT_BINARY_DIR}/install-test")
set(prefix "${there}/tree")

add_test(NAME install.tree COMMAND "${CMAKE_COMMAND}" "-DBUILD=${PROJECT_BINARY_DIR}" "-DTHERE=${there}"
  -P "${here}/tree.cmake")
set_tests_properties(install.tree PROPERTIES FIXTURES_SETUP installed)

set(compilers "-DCMAKE_C_COMPILER=${CMAKE_C_COMPILER}" "-DCMAKE_CXX_COMPILER=${CMAKE_CXX_COMPILER}")
if(WIN32)
  set(compilers "-DCMAKE_TOOLCHAIN_FILE=${CMAKE_TOOLCHAIN_FILE}" -DCMAKE_EXE_LINKER_FLAGS=-static)
endif()
add_test(NAME install.find_package
  COMMAND "${CMAKE_CTEST_COMMAND}" --build-and-test "${here}" "${there}/consumer" --build-generator "${CMAKE_GENERATOR}"
    --build-options "-DCMAKE_PREFIX_PATH=${prefix}" ${compilers}
    --test-command "${CMAKE_CTEST_COMMAND}" --output-on-failure)
add_test(NAME install.unknown_component
  COMMAND "${CMAKE_COMMAND}" -S "${here}" -B "${there}/consumer" -DCOMPONENTS=nonesuch)
set_tests_properties(install.find_package PROPERTIES FIXTURES_REQUIRED installed FIXTURES_SETUP consumer
  ENVIRONMENT "WINEPATH=Z:${prefix}/${CMAKE_INSTALL_BINDIR}")
set_tests_properties(install.unknown_component PROPERTIES FIXTURES_REQUIRED "installed;consumer"
  PASS_REGULAR_EXPRESSION "ovks has no component \"nonesuch\", but these:[ \n]+ovks, a2, n0")

if(WIN32)
  return()
endif()
find_program(OVKS_PKG_CONFIG pkg-config)
if(OVKS_PKG_CONFIG)
  add_test(NAME install.pkg_config
    COMMAND "${here}/pkg_config.sh" "${prefix}/${CMAKE_INSTALL_LIBDIR}" "${there}/pkg_config")
  set_tests_properties(install.pkg_config PROPERTIES FIXTURES_REQUIRED installed
    ENVIRONMENT "CC=${CMAKE_C_COMPILER};CXX=${CMAKE_CXX_COMPILER}")
endif()

find_program(OVKS_DPKG_DEB dpkg-deb)
if(OVKS_DPKG_DEB)
  add_test(NAME install.debian
    COMMAND "${here}/debian.sh" "${PROJECT_BINARY_DIR}" "${there}/debian" "${CMAKE_INSTALL_LIBDIR}")
  set_tests_properties(install.debian PROPERTIES FIXTURES_REQUIRED installed)
endif()
