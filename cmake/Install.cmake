# SPDX-License-Identifier: MIT
# cmake --install: modules and static libraries, headers, documents, and what find_package and pkg-config read. The tree
# may be moved.
include(CMakePackageConfigHelpers)
include(GNUInstallDirs)

# ovks_install(target component [folder]): as ovks::component, in the libraries' folder or one below.
function(ovks_install target component)
  set_target_properties(${target} PROPERTIES EXPORT_NAME ${component})
  install(TARGETS ${target} EXPORT ovks
    RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}"
    LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}/${ARGN}"
    ARCHIVE DESTINATION "${CMAKE_INSTALL_LIBDIR}"
    INCLUDES DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}")
  set(OVKS_COMPONENTS ${OVKS_COMPONENTS} ${component} PARENT_SCOPE)
endfunction()

ovks_install(ovks ovks)
ovks_install(ovks_a2 a2)
ovks_install(ovks_n0 n0 "${OVKS_HWCAPS_DIR}")
ovks_install(ovkcore ovkcore)
if(TARGET ovks_static)
  ovks_install(ovks_static ovks_static)
  ovks_install(ovks_n0_static n0_static)
  ovks_install(ovkcore_static ovkcore_static)
endif()

install(DIRECTORY include/ DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}")
install(FILES README.md CHANGELOG.md LICENSE DESTINATION "${CMAKE_INSTALL_DOCDIR}")
install(DIRECTORY docs DESTINATION "${CMAKE_INSTALL_DOCDIR}" FILES_MATCHING PATTERN *.md PATTERN *.svg PATTERN *.csv)
# There once `docs` has been built.
install(DIRECTORY "${OVKS_DOCS_DIR}/man/" DESTINATION "${CMAKE_INSTALL_MANDIR}" OPTIONAL)

set(config "${CMAKE_INSTALL_LIBDIR}/cmake/ovks")
install(EXPORT ovks FILE ovksTargets.cmake NAMESPACE ovks:: DESTINATION "${config}")
list(JOIN OVKS_COMPONENTS ", " OVKS_COMPONENTS)
configure_package_config_file(cmake/ovksConfig.cmake.in ovksConfig.cmake INSTALL_DESTINATION "${config}")
write_basic_package_version_file(ovksConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(FILES "${PROJECT_BINARY_DIR}/ovksConfig.cmake" "${PROJECT_BINARY_DIR}/ovksConfigVersion.cmake"
  DESTINATION "${config}")

if(WIN32)
  return()
endif()
# No link to the AVX-512 level in the libraries' folder itself: ldconfig would let libovks.so.9 there point to it.
foreach(folder IN ITEMS "" "${OVKS_HWCAPS_DIR}")
  foreach(link IN ITEMS libovks.so.9 libovks.so)
    install(FILES "${OVKS_LIBRARY_DIR}/${folder}/${link}" DESTINATION "${CMAKE_INSTALL_LIBDIR}/${folder}")
  endforeach()
endforeach()

# From the folder of the .pc files to the prefix.
file(RELATIVE_PATH OVKS_PREFIX "${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig" "${CMAKE_INSTALL_PREFIX}")
foreach(name IN ITEMS ovks ovkcore)
  configure_file(cmake/${name}.pc.in ${name}.pc @ONLY)
  install(FILES "${PROJECT_BINARY_DIR}/${name}.pc" DESTINATION "${CMAKE_INSTALL_LIBDIR}/pkgconfig")
endforeach()
