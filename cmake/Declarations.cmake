# SPDX-License-Identifier: MIT
# What the public headers declare, as text.

# The header without comments, on one line, "@" standing for the semicolons, which would part list elements.
function(ovks_read_header header out)
  file(READ "${header}" text)
  string(REPLACE ";" "@" text "${text}")
  string(REGEX REPLACE "/\\*([^*]|\\*+[^*/])*\\*+/" " " text "${text}")
  string(REGEX REPLACE "//[^\n]*" " " text "${text}")
  string(REGEX REPLACE "[ \n]+" " " text "${text}")
  set(${out} "${text}" PARENT_SCOPE)
endfunction()

# The prototypes in such a text, each as "type name(parameters)". That every one was seen is checked by a second count,
# of the declarations that end in ");".
function(ovks_find_prototypes text out)
  string(REGEX MATCHALL "(const )?[A-Za-z0-9_]+[ *]+[A-Za-z0-9_]+ ?\\([^)]*\\)" found "${text}")
  string(REGEX MATCHALL "\\) ?@" ends "${text}")
  list(LENGTH found count)
  list(LENGTH ends prototypes)
  if(NOT count EQUAL prototypes)
    message(FATAL_ERROR "Declarations: ${count} names, but ${prototypes} prototypes")
  endif()
  set(${out} "${found}" PARENT_SCOPE)
endfunction()
