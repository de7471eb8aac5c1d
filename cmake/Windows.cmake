# SPDX-License-Identifier: MIT
# Windows, by the MinGW-w64 compiler:
#   bin/ovkcore-9.0.dll                        the companion
#   bin/ovksa2-9.0.dll, bin/ovksn0-9.0.dll     the levels; a program takes the one whose import library it links
#   lib/lib*-9.0.dll.a                         the import libraries
set(OVKS_LIBRARY_DIR "${PROJECT_BINARY_DIR}/lib")
set(CMAKE_SHARED_LIBRARY_PREFIX "")
set(CMAKE_ARCHIVE_OUTPUT_DIRECTORY "${OVKS_LIBRARY_DIR}")
# Programs find the DLLs beside them, and do without the compiler's own.
set(CMAKE_EXE_LINKER_FLAGS "${CMAKE_EXE_LINKER_FLAGS} -static")

# The compiler takes its stack for aligned to 32 and 64 bytes, where the system guarantees 16.
add_compile_options(-Wa,-muse-unaligned-vector-move)
# The C driver links the modules; it needs nothing on behalf of C++.
set(CMAKE_CXX_IMPLICIT_LINK_LIBRARIES "")

function(ovks_link_level target level)
  target_sources(${target} PRIVATE "${OVKS_GENERATED_DIR}/exports.def")
  target_link_options(${target} PRIVATE "-Wl,-T,${OVKS_GENERATED_DIR}/table.ld")
  set_target_properties(${target} PROPERTIES LINK_DEPENDS "${OVKS_GENERATED_DIR}/table.ld")
endfunction()
