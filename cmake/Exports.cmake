# SPDX-License-Identifier: MIT
# Makes from the public headers, at build time, what follows from the exports' names:
#   stubs.S       the exported entry points, one two-instruction jump through the export's slot each
#   exports.ld    for GNU ld: the table's name, and the version script that exports these names and nothing else
#   exports.def   the same for a DLL
#   exports.inc   X(name) lines, for the tests
#   prototypes.inc   X(name, "parameters") lines, for tests that call every export
# Run as a script:  cmake -DHEADERS=a.h;b.h -DOUTPUT=dir -P Exports.cmake
cmake_policy(VERSION 3.25)
include("${CMAKE_CURRENT_LIST_DIR}/Declarations.cmake")

set(prototypes "")
foreach(header IN LISTS HEADERS)
  ovks_read_header("${header}" text)
  ovks_find_prototypes("${text}" found)
  list(APPEND prototypes ${found})
endforeach()
set(names ${prototypes})
list(TRANSFORM names REPLACE "^.*[ *]([A-Za-z0-9_]+) ?\\(.*$" "\\1")

list(LENGTH names count)
set(distinct ${names})
list(REMOVE_DUPLICATES distinct)
list(LENGTH distinct distinctCount)
set(alien ${names})
list(FILTER alien EXCLUDE REGEX "^ovks")
if(NOT count EQUAL distinctCount OR alien OR count EQUAL 0)
  message(FATAL_ERROR "Exports: ${count} names, ${distinctCount} of them distinct, not of the library: ${alien}")
endif()
list(SORT names COMPARE STRING CASE SENSITIVE)

set(stubs "/* Generated from the public headers. */
#ifdef __ELF__
#define OVKS_FUNCTION(name) .type name, @function
#else
#define OVKS_FUNCTION(name) .def name; .scl 2; .type 32; .endef
#endif
.intel_syntax noprefix
.text
")
set(version "VERSION {\n{\n  global:\n")
set(def "EXPORTS\n")
set(inc "")
foreach(name IN LISTS names)
  string(APPEND stubs "
.p2align 4
.globl ${name}
OVKS_FUNCTION(${name})
${name}:
  lea r11, [rip + ovksSlot_${name}]
  jmp [r11]
")
  string(APPEND version "    ${name};\n")
  string(APPEND def "  ${name}\n")
  string(APPEND inc "X(${name})\n")
endforeach()
string(APPEND version "  local: *;\n};\n}\n")

# The table begins with its first slot: the linker lays the slots side by side.
list(GET names 0 first)
set(table "ExportTable = ovksSlot_${first};\n")

set(epilogue "
#ifdef __ELF__
.section .note.GNU-stack, \"\", @progbits
#endif
")
file(WRITE "${OUTPUT}/stubs.S" "${stubs}${epilogue}")
file(WRITE "${OUTPUT}/exports.ld" "${table}${version}")
file(WRITE "${OUTPUT}/exports.def" "${def}")
file(WRITE "${OUTPUT}/exports.inc" "${inc}")

list(TRANSFORM prototypes REPLACE "^.*[ *]([A-Za-z0-9_]+) ?\\((.*)\\)$" "X(\\1, \"\\2\")")
list(JOIN prototypes "\n" prototypes)
file(WRITE "${OUTPUT}/prototypes.inc" "${prototypes}\n")
