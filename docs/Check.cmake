# SPDX-License-Identifier: MIT
# After Doxygen: every export has its place in the HTML pages and in the manual pages, and a manual page of its own name
# that leads there.
#
#   cmake -DEXPORTS=exports.inc -DDOCS=build/docs -P Check.cmake
cmake_policy(VERSION 3.25)

file(STRINGS "${EXPORTS}" exports REGEX "^X")
list(TRANSFORM exports REPLACE "X\\((.*)\\)" "\\1")

# Other pages have names that are too common for a system's manual.
file(GLOB pages "${DOCS}/man/man3/*.3")
foreach(page IN LISTS pages)
  get_filename_component(name "${page}" NAME_WLE)
  if(NOT name MATCHES "^ovk[A-Za-z0-9_]*$")
    file(REMOVE "${page}")
    continue()
  endif()
  file(READ "${page}" lines)
  string(REGEX MATCHALL "\\\\fBo[vw][kn][A-Za-z0-9_]+\\\\fP \\(" found "${lines}")
  foreach(function IN LISTS found)
    string(REGEX REPLACE "\\\\fB([A-Za-z0-9_]+)\\\\fP.*" "\\1" function "${function}")
    set(manual_${function} "${name}")
    if(NOT function STREQUAL name)
      file(WRITE "${DOCS}/man/man3/${function}.3" ".so man3/${name}.3\n")
    endif()
  endforeach()
endforeach()

file(READ "${DOCS}/ovks.tag" tags)
set(member "<name>(ovks[A-Za-z0-9_]+)</name>[ \n]*<anchorfile>([^<]+)</anchorfile>[ \n]*<anchor>([a-z0-9]+)")
string(REGEX MATCHALL "${member}" members "${tags}")
foreach(entry IN LISTS members)
  string(REGEX MATCH "${member}" all "${entry}")
  set(id "id=\"${CMAKE_MATCH_3}\"")
  set(name "${CMAKE_MATCH_1}")
  file(READ "${DOCS}/html/${CMAKE_MATCH_2}" page)
  string(FIND "${page}" "${id}" position)
  if(position GREATER 0)
    set(html_${name} TRUE)
  endif()
endforeach()

foreach(name IN LISTS exports)
  if(NOT manual_${name} OR NOT html_${name})
    message(SEND_ERROR "${name} has no place in the documentation")
  endif()
endforeach()
list(LENGTH exports count)
message(STATUS "${count} exports documented")
