# SPDX-License-Identifier: MIT
# Linux:
#   lib/libovkcore-9.0.so                                  the companion
#   lib/libovksa2-9.0.so                                   AVX2 level, SONAME libovks.so.9
#   lib/glibc-hwcaps/x86-64-v4/libovksn0-9.0.so            AVX-512 level, SONAME libovks.so.9
#
# with the links libovks.so.9 and libovks.so beside each level: the loader takes the one that fits the processor. The
# same objects make the static libraries.
include(CheckLinkerFlag)
check_linker_flag(C "-Wl,-z,x86-64-v4" OVKS_LINKER_MARKS_LEVEL)

# GNU's, whatever compiler it is.
find_program(OVKS_LD NAMES ld.bfd ld REQUIRED)
find_program(OVKS_OBJCOPY objcopy REQUIRED)

set(OVKS_LIBRARY_DIR "${PROJECT_BINARY_DIR}/lib")
set(OVKS_HWCAPS_DIR "glibc-hwcaps/x86-64-v4")

function(ovks_link_level target level)
  set(folder "")
  if(level STREQUAL "x86-64-v4")
    set(folder "${OVKS_HWCAPS_DIR}")
  endif()
  target_link_options(${target} PRIVATE "-Wl,--sort-section=name" "-Wl,-z,relro" "-Wl,-z,now" "-Wl,-soname,libovks.so.9"
    "${OVKS_GENERATED_DIR}/exports.ld")
  if(NOT OVKS_SANITIZE)
    target_link_options(${target} PRIVATE "-Wl,-z,defs")
  endif()
  if(OVKS_LINKER_MARKS_LEVEL)
    target_link_options(${target} PRIVATE "-Wl,-z,${level}")
  endif()
  file(RELATIVE_PATH up "/${folder}" "/")
  set_target_properties(${target} PROPERTIES
    LINK_DEPENDS "${OVKS_GENERATED_DIR}/exports.ld"
    LIBRARY_OUTPUT_DIRECTORY "${OVKS_LIBRARY_DIR}/${folder}"
    NO_SONAME ON
    BUILD_RPATH "$ORIGIN/${up}" INSTALL_RPATH "$ORIGIN/${up}" BUILD_WITH_INSTALL_RPATH ON)
  foreach(link IN ITEMS libovks.so.9 libovks.so)
    add_custom_command(TARGET ${target} POST_BUILD
      COMMAND "${CMAKE_COMMAND}" -E create_symlink
        "$<TARGET_FILE_NAME:${target}>" "$<TARGET_FILE_DIR:${target}>/${link}")
  endforeach()
endfunction()

# ovks_add_static(target output objects libraries...): a static library of one object. Only the exports are global in
# it, so that no inline function compiled for a level's processors stands in for the program's own. Functions and slots
# keep sections of their own: --gc-sections leaves a program what it calls.
function(ovks_add_static target output objects)
  set(object "${CMAKE_CURRENT_BINARY_DIR}/${target}.o")
  set(names "${OVKS_GENERATED_DIR}/static.txt")
  set(slots "${OVKS_GENERATED_DIR}/slots.ld")
  add_custom_command(OUTPUT "${object}"
    COMMAND "${OVKS_LD}" -r --force-group-allocation -T "${slots}" -o "${object}" "$<TARGET_OBJECTS:${objects}>"
    COMMAND "${OVKS_OBJCOPY}" "--keep-global-symbols=${names}" "${object}"
    DEPENDS "$<TARGET_OBJECTS:${objects}>" "${names}" "${slots}"
    COMMENT "Joining the objects of ${target}" COMMAND_EXPAND_LISTS VERBATIM)
  set_source_files_properties("${object}" PROPERTIES EXTERNAL_OBJECT ON)
  add_library(${target} STATIC "${object}")
  target_include_directories(${target} PUBLIC "$<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/include>")
  target_link_libraries(${target} PRIVATE ${ARGN})
  set_target_properties(${target} PROPERTIES OUTPUT_NAME "${output}" LINKER_LANGUAGE C
    ARCHIVE_OUTPUT_DIRECTORY "${OVKS_LIBRARY_DIR}")
endfunction()
