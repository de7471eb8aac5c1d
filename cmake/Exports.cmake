# SPDX-License-Identifier: MIT
# Makes from the public headers, at build time, what follows from the exports' names:
#   stubs.S       the exported entry points, one two-instruction jump through the export's slot each
#   exports.ld    for GNU ld: the table's name, and the version script that exports these names and nothing else
#   slots.ld      for ld -r: the slots in their order, in a section each
#   static.txt    for objcopy: the names that the static libraries show, the companion's too
#   exports.def   the same for a DLL, whose linker sorts the table by table.ld
#   exports.inc   X(name) lines, for the tests
# Run as a script:  cmake -DHEADERS=a.h;b.h -DCOMPANION=c.h -DOUTPUT=dir -P Exports.cmake
#
# The names are what stands before a parameter list. That every prototype was seen is checked by a second count, of the
# declarations that end in ");".

cmake_policy(VERSION 3.25)

# read_names(names header...): the functions that the headers declare, in byte order.
function(read_names result)
  set(names "")
  set(prototypes 0)
  foreach(header IN LISTS ARGN)
    file(READ "${header}" text)
    string(REPLACE ";" "@" text "${text}")  # which would part list elements
    string(REGEX REPLACE "/\\*([^*]|\\*+[^*/])*\\*+/" " " text "${text}")
    string(REGEX REPLACE "//[^\n]*" " " text "${text}")
    string(REGEX MATCHALL "(ovks?|own)[A-Z][A-Za-z0-9_]*[ \n]*\\(" found "${text}")
    string(REGEX MATCHALL "\\)[ \n]*@" ends "${text}")
    list(LENGTH ends count)
    math(EXPR prototypes "${prototypes} + ${count}")
    list(APPEND names ${found})
  endforeach()
  list(TRANSFORM names REPLACE "[ \n]*\\($" "")

  list(LENGTH names count)
  set(distinct ${names})
  list(REMOVE_DUPLICATES distinct)
  list(LENGTH distinct distinctCount)
  if(NOT count EQUAL prototypes OR NOT count EQUAL distinctCount OR count EQUAL 0)
    message(FATAL_ERROR "Exports: ${count} names, ${distinctCount} of them distinct, but ${prototypes} prototypes")
  endif()
  list(SORT names COMPARE STRING CASE SENSITIVE)
  set(${result} "${names}" PARENT_SCOPE)
endfunction()

read_names(names ${HEADERS})
read_names(companion "${COMPANION}")

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
