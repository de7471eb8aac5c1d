# SPDX-License-Identifier: MIT
# A header of the C++ face as Doxygen gets to see it: the C functions that an object calls stand in its comment, not in
# its type, which would be too wide for any page.
#
#   awk -f overloads.awk vector.hpp

/^inline constexpr [A-Za-z:]+</ { declaration = "" ; open = 1 }
open {
  declaration = declaration " " $0
  if (!/;$/) next
  open = 0
  kind = $0 = declaration
  sub(/^ *inline constexpr /, "", kind)
  sub(/<.*/, "", kind)
  sub(/^detail::/, "", kind)
  name = $NF
  functions = ""
  while (match($0, /ovks[A-Z][A-Za-z0-9_]*/)) {
    functions = functions (functions == "" ? "" : ", ") substr($0, RSTART, RLENGTH)
    $0 = substr($0, RSTART + RLENGTH)
  }
  print "///\n/// Calls " functions "."
  print "inline constexpr " kind " " name
  next
}
{ print }
