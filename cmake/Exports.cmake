# SPDX-License-Identifier: MIT
# Makes from the public headers, at build time, what follows from the exports' names:
#   stubs.S       the exported entry points, one two-instruction jump through the export's slot each
#   exports.ld    for GNU ld: the table's name, and the version script that exports these names and nothing else
#   slots.ld      for ld -r: the slots in their order, in a section each
#   static.txt    for objcopy: the names that the static libraries show, the companion's too
#   exports.def   the same for a DLL, whose linker sorts the table by table.ld
#   exports.inc   X(name) lines, for the tests
#   prototypes.inc   X(name, "parameters") lines, for tests that call every export
# Run as a script:  cmake -DHEADERS=a.h;b.h -DCOMPANION=c.h -DOUTPUT=dir -P Exports.cmake
cmake_policy(VERSION 3.25)
include("${CMAKE_CURRENT_LIST_DIR}/Declarations.cmake")

# read_names(names prototypes header...): the functions that the headers declare, the names in byte order.
function(read_names names_out prototypes_out)
  set(prototypes "")
  foreach(header IN LISTS ARGN)
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
  list(FILTER alien EXCLUDE REGEX "^(ovks?|own)[A-Z]")
  if(NOT count EQUAL distinctCount OR alien OR count EQUAL 0)
    message(FATAL_ERROR "Exports: ${count} names, ${distinctCount} of them distinct, not of the library: ${alien}")
  endif()
  list(SORT names COMPARE STRING CASE SENSITIVE)
  set(${names_out} "${names}" PARENT_SCOPE)
  set(${prototypes_out} "${prototypes}" PARENT_SCOPE)
endfunction()

read_names(names prototypes ${HEADERS})
read_names(companion ignored "${COMPANION}")

set(stubs "/* Generated from the public headers. */
#ifdef __ELF__
#define OVKS_FUNCTION(name) .section .text.name, \"ax\", @progbits; .type name, @function
#else
#define OVKS_FUNCTION(name) .section .text$name, \"x\"; .def name; .scl 2; .type 32; .endef
#endif
.intel_syntax noprefix
")
set(version "VERSION {\n{\n  global:\n")
set(slots "SECTIONS {\n")
set(def "EXPORTS\n")
set(inc "")
foreach(name IN LISTS names)
  string(APPEND stubs "
OVKS_FUNCTION(${name})
.p2align 4
.globl ${name}
${name}:
  lea r11, [rip + ovksSlot_${name}]
  jmp [r11]
")
  string(APPEND version "    ${name};\n")
  string(APPEND slots "  .data.rel.ro.ovks.${name} : { *(.data.rel.ro.ovks.${name}) }\n")
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
file(WRITE "${OUTPUT}/table.ld" "SECTIONS
{
  .ovks BLOCK(__section_alignment__) : { ExportTable = .; KEEP(*(SORT(.ovks$*))) }
}
INSERT AFTER .rdata;
")
file(WRITE "${OUTPUT}/stubs.S" "${stubs}${epilogue}")
file(WRITE "${OUTPUT}/exports.ld" "${table}${version}")
file(WRITE "${OUTPUT}/slots.ld" "${slots}}\n")
list(JOIN names "\n" shown)
list(JOIN companion "\n" companion)
file(WRITE "${OUTPUT}/static.txt" "${shown}\n${companion}\n")
file(WRITE "${OUTPUT}/exports.def" "${def}")
file(WRITE "${OUTPUT}/exports.inc" "${inc}")

list(TRANSFORM prototypes REPLACE "^.*[ *]([A-Za-z0-9_]+) ?\\((.*)\\)$" "X(\\1, \"\\2\")")
list(JOIN prototypes "\n" prototypes)
file(WRITE "${OUTPUT}/prototypes.inc" "${prototypes}\n")
