# SPDX-License-Identifier: MIT
# The modules: the companion, and one build of the library's sources for each processor level.
#
#   lib/libovkcore-9.0.so                                  the companion
#   lib/libovksa2-9.0.so                                   AVX2 level, SONAME libovks.so.9
#   lib/glibc-hwcaps/x86-64-v4/libovksn0-9.0.so            AVX-512 level, SONAME libovks.so.9
#
# with the links libovks.so.9 and libovks.so beside each level: the loader takes the one that fits the processor. The
# same objects make the static libraries.
include(CheckLinkerFlag)
check_linker_flag(C "-Wl,-z,x86-64-v4" OVKS_LINKER_MARKS_LEVEL)

set(OVKS_LIBRARY_DIR "${PROJECT_BINARY_DIR}/lib")
set(OVKS_HWCAPS_DIR "glibc-hwcaps/x86-64-v4")

# ovks_add_module(target output folder): the shared library of target_objects, linked by the C driver: no C++ run time.
function(ovks_add_module target output folder)
  target_include_directories(${target}_objects PUBLIC "$<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/include>")
  target_compile_options(${target}_objects PRIVATE "$<$<COMPILE_LANGUAGE:CXX>:-fno-exceptions;-fno-rtti>")
  set_target_properties(${target}_objects PROPERTIES POSITION_INDEPENDENT_CODE ON)
  add_library(${target} SHARED "$<TARGET_OBJECTS:${target}_objects>")
  target_include_directories(${target} PUBLIC "$<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/include>")
  target_link_options(${target} PRIVATE "-Wl,--as-needed")
  set_target_properties(${target} PROPERTIES OUTPUT_NAME "${output}-9.0"
    LIBRARY_OUTPUT_DIRECTORY "${OVKS_LIBRARY_DIR}/${folder}")
  if(NOT OVKS_SANITIZE)
    set_target_properties(${target} PROPERTIES LINKER_LANGUAGE C)
  endif()
endfunction()

# ovks_add_level(code level folder): one build of OVKS_SOURCES.
function(ovks_add_level code level folder)
  set(target ovks_${code})
  add_library(${target}_objects OBJECT ${OVKS_SOURCES} "${OVKS_GENERATED_DIR}/stubs.S")
  add_dependencies(${target}_objects ovks_exports)
  target_include_directories(${target}_objects PRIVATE "${PROJECT_SOURCE_DIR}/src")
  target_compile_options(${target}_objects PRIVATE
    "-march=${level}" -ffp-contract=off -fvisibility=hidden -ffunction-sections -fno-plt
    "$<$<COMPILE_LANGUAGE:CXX>:-fno-threadsafe-statics>")
  if(level STREQUAL "x86-64-v4")
    target_compile_options(${target}_objects PRIVATE -mprefer-vector-width=512)
  endif()

  ovks_add_module(${target} "ovks${code}" "${folder}")
  target_link_libraries(${target} PRIVATE ovkcore)
  # What the compiler itself calls for is linked in.
  target_link_options(${target} PRIVATE -static-libgcc "-Wl,--sort-section=name"
    "-Wl,--gc-sections" "-Wl,-z,relro" "-Wl,-z,now" "-Wl,-soname,libovks.so.9" "${OVKS_GENERATED_DIR}/exports.ld")
  if(NOT OVKS_SANITIZE)
    target_link_options(${target} PRIVATE "-Wl,-z,defs")
  endif()
  if(OVKS_LINKER_MARKS_LEVEL)
    target_link_options(${target} PRIVATE "-Wl,-z,${level}")
  endif()
  file(RELATIVE_PATH up "/${folder}" "/")
  set_target_properties(${target} PROPERTIES
    LINK_DEPENDS "${OVKS_GENERATED_DIR}/exports.ld"
    NO_SONAME ON
    BUILD_RPATH "$ORIGIN/${up}" INSTALL_RPATH "$ORIGIN/${up}" BUILD_WITH_INSTALL_RPATH ON)
  foreach(link IN ITEMS libovks.so.9 libovks.so)
    add_custom_command(TARGET ${target} POST_BUILD
      COMMAND "${CMAKE_COMMAND}" -E create_symlink "$<TARGET_FILE_NAME:${target}>" "$<TARGET_FILE_DIR:${target}>/${link}")
  endforeach()
endfunction()

# ovks_add_static(target output objects libraries...): a static library of one object. Only the exports are global in it, so that no
# inline function compiled for a level's processors stands in for the program's own. Functions and slots keep sections
# of their own: --gc-sections leaves a program what it calls.
function(ovks_add_static target output objects)
  set(object "${CMAKE_CURRENT_BINARY_DIR}/${target}.o")
  set(names "${OVKS_GENERATED_DIR}/static.txt")
  set(slots "${OVKS_GENERATED_DIR}/slots.ld")
  add_custom_command(OUTPUT "${object}"
    COMMAND "${CMAKE_LINKER}" -r --force-group-allocation -T "${slots}" -o "${object}" "$<TARGET_OBJECTS:${objects}>"
    COMMAND "${CMAKE_OBJCOPY}" "--keep-global-symbols=${names}" "${object}"
    DEPENDS "$<TARGET_OBJECTS:${objects}>" "${names}" "${slots}"
    COMMENT "Joining the objects of ${target}" COMMAND_EXPAND_LISTS VERBATIM)
  set_source_files_properties("${object}" PROPERTIES EXTERNAL_OBJECT ON)
  add_library(${target} STATIC "${object}")
  target_include_directories(${target} PUBLIC "$<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/include>")
  target_link_libraries(${target} PRIVATE ${ARGN})
  set_target_properties(${target} PROPERTIES OUTPUT_NAME "${output}" LINKER_LANGUAGE C
    ARCHIVE_OUTPUT_DIRECTORY "${OVKS_LIBRARY_DIR}")
endfunction()
