# SPDX-License-Identifier: MIT
# cpack: a Debian package and an archive; for Windows a zip.
set(CPACK_PACKAGE_VENDOR "The ovks authors")
set(CPACK_PACKAGE_CONTACT "The ovks authors <ovks@localhost>")
set(CPACK_RESOURCE_FILE_LICENSE "${PROJECT_SOURCE_DIR}/LICENSE")
set(CPACK_VERBATIM_VARIABLES ON)
set(CPACK_THREADS 1)
if(WIN32)
  set(CPACK_GENERATOR ZIP)
else()
  set(CPACK_GENERATOR "DEB;TGZ")
endif()

set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION libs)
# The first whose loader looks into glibc-hwcaps/.
set(CPACK_DEBIAN_PACKAGE_DEPENDS "libc6 (>= 2.33)")
# The loader's list of libraries is made anew when the package comes or goes.
file(WRITE "${PROJECT_BINARY_DIR}/debian/triggers" "activate-noawait ldconfig\n")
set(CPACK_DEBIAN_PACKAGE_CONTROL_EXTRA "${PROJECT_BINARY_DIR}/debian/triggers")
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
include(CPack)
