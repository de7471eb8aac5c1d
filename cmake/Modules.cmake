# SPDX-License-Identifier: MIT
# The modules: the companion, and one build of the library's sources for each processor level. How they are linked, and
# what becomes of them, is the system's affair: Elf.cmake, Windows.cmake.
if(WIN32)
  include(Windows)
else()
  include(Elf)
endif()

# ovks_add_module(target output): the shared library of target_objects, linked by the C driver: no C++ run time.
function(ovks_add_module target output)
  target_include_directories(${target}_objects PUBLIC "$<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/include>")
  target_compile_options(${target}_objects PRIVATE "$<$<COMPILE_LANGUAGE:CXX>:-fno-exceptions;-fno-rtti>")
  set_target_properties(${target}_objects PROPERTIES POSITION_INDEPENDENT_CODE ON)
  add_library(${target} SHARED "$<TARGET_OBJECTS:${target}_objects>")
  target_include_directories(${target} PUBLIC "$<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/include>")
  # What the compiler itself calls for is linked in.
  target_link_options(${target} PRIVATE -static-libgcc "-Wl,--as-needed")
  set_target_properties(${target} PROPERTIES OUTPUT_NAME "${output}-9.0" LIBRARY_OUTPUT_DIRECTORY "${OVKS_LIBRARY_DIR}")
  if(NOT OVKS_SANITIZE)
    set_target_properties(${target} PROPERTIES LINKER_LANGUAGE C)
  endif()
endfunction()

# ovks_add_level(code level): one build of OVKS_SOURCES.
function(ovks_add_level code level)
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
  ovks_add_module(${target} "ovks${code}")
  target_link_libraries(${target} PRIVATE ovkcore)
  target_link_options(${target} PRIVATE "-Wl,--gc-sections")
  ovks_link_level(${target} ${level})
endfunction()
