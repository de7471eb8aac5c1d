# SPDX-License-Identifier: MIT
# The modules: the companion, and one build of the library's sources for each processor level.
#
#   lib/libovkcore-9.0.so                                  the companion
#   lib/libovksa2-9.0.so                                   AVX2 level, SONAME libovks.so.9
#   lib/glibc-hwcaps/x86-64-v4/libovksn0-9.0.so            AVX-512 level, SONAME libovks.so.9
#
# with the links libovks.so.9 and libovks.so beside each level: the loader takes the one that fits the processor.
include(CheckLinkerFlag)
check_linker_flag(C "-Wl,-z,x86-64-v4" OVKS_LINKER_MARKS_LEVEL)

set(OVKS_LIBRARY_DIR "${PROJECT_BINARY_DIR}/lib")
set(OVKS_HWCAPS_DIR "glibc-hwcaps/x86-64-v4")

# ovks_add_level(target code level folder): one build of OVKS_SOURCES.
function(ovks_add_level target code level folder)
  add_library(${target} SHARED ${OVKS_SOURCES} "${OVKS_GENERATED_DIR}/stubs.S")
  add_dependencies(${target} ovks_exports)
  target_include_directories(${target} PRIVATE "${PROJECT_SOURCE_DIR}/src"
    PUBLIC "${PROJECT_SOURCE_DIR}/include")
  target_compile_options(${target} PRIVATE
    "-march=${level}" -ffp-contract=off -fvisibility=hidden -ffunction-sections -fno-plt
    "$<$<COMPILE_LANGUAGE:CXX>:-fno-exceptions;-fno-rtti;-fno-threadsafe-statics>")
  if(level STREQUAL "x86-64-v4")
    target_compile_options(${target} PRIVATE -mprefer-vector-width=512)
  endif()
  target_link_libraries(${target} PRIVATE ovkcore)
  # No C++ run time: the C driver links, and what the compiler itself calls for is linked in.
  target_link_options(${target} PRIVATE -static-libgcc "-Wl,--as-needed" "-Wl,--sort-section=name"
    "-Wl,--gc-sections" "-Wl,-z,relro" "-Wl,-z,now" "${OVKS_GENERATED_DIR}/exports.ld")
  if(NOT OVKS_SANITIZE)
    target_link_options(${target} PRIVATE "-Wl,-z,defs")
    set_target_properties(${target} PROPERTIES LINKER_LANGUAGE C)
  endif()
  if(OVKS_LINKER_MARKS_LEVEL)
    target_link_options(${target} PRIVATE "-Wl,-z,${level}")
  endif()
  file(RELATIVE_PATH up "/${folder}" "/")
  set_target_properties(${target} PROPERTIES
    OUTPUT_NAME "ovks${code}-9.0"
    LINK_DEPENDS "${OVKS_GENERATED_DIR}/exports.ld"
    LIBRARY_OUTPUT_DIRECTORY "${OVKS_LIBRARY_DIR}/${folder}"
    NO_SONAME ON
    BUILD_RPATH "$ORIGIN/${up}" INSTALL_RPATH "$ORIGIN/${up}" BUILD_WITH_INSTALL_RPATH ON)
  target_link_options(${target} PRIVATE "-Wl,-soname,libovks.so.9")
  foreach(link IN ITEMS libovks.so.9 libovks.so)
    add_custom_command(TARGET ${target} POST_BUILD
      COMMAND "${CMAKE_COMMAND}" -E create_symlink "$<TARGET_FILE_NAME:${target}>" "$<TARGET_FILE_DIR:${target}>/${link}")
  endforeach()
endfunction()
