# SPDX-License-Identifier: MIT
# A public header as Doxygen gets to see it: the header becomes a topic, each of its @name groups a topic below, on a
# page that repeats what holds for the whole header. Parameters get their meaning from parameters.txt, the first file.
#
#   awk -v kind=@details -f groups.awk parameters.txt vector.h
#
# The kind of comment that each function of a group gets, with the group's first sentence: @details make an entry of its
# own on the page, @brief does not.

FNR == NR {
  name = $1
  sub(/^[^ ]+ /, "")
  meaning[name] = $0
  next
}

FNR == 1 {
  family = FILENAME
  sub(/.*\//, "", family)
  sub(/\.h$/, "", family)
  if (family != "ovkcore") family = "ovks_" family
}

# Comments are held back until they end.
/^\/\*\*/ { inComment = 1; comment = "" }
inComment {
  comment = comment $0 "\n"
  if (!/\*\//) next
  inComment = 0
  if (comment ~ /@file/) printFamily(text(comment))
  else if (comment ~ /@name/) openGroup(text(comment))
  else if (comment ~ /@}/) closeGroup()
  else printf "%s", comment
  next
}

# Pairs in one line, as their header has them.
/^typedef struct \{ [a-z0-9_]+ re, im; \}/ {
  suffix = $0
  sub(/.*< /, "", suffix)
  print "/** Complex number, " suffix
  print "typedef struct {\n" $4 " re; /**< real part */\n" $4 " im; /**< imaginary part */\n} " $8
  next
}
grouped { members = members (/^[A-Za-z]/ ? "/** " kind " @formula */\n" : "") $0 "\n"; next }
{ print }
END { if (FILENAME !~ /\/ovks\.h$/) print "/** @} */" }

# A comment's lines without their frame.
function text(c) {
  gsub(/(^|\n)( \*|\/\*\*) ? ?/, "\n", c)
  sub(/ *(@{ *)?\*\/\n$/, "", c)
  sub(/^\n/, "", c)
  return c
}

# What comes before the first full stop.
function sentence(t) {
  gsub(/\n/, " ", t)
  sub(/^ +/, "", t)
  if (match(t, /\.( |$)/)) t = substr(t, 1, RSTART)
  return t
}

function printFamily(t,    title) {
  sub(/ *@file\n/, "", t)
  title = sentence(t)
  print "/** @file\n" title " */"
  if (FILENAME ~ /\/ovks\.h$/) return
  sub(/[.:,].*/, "", title)
  print "/** @defgroup " family " " title "\n" t "\n@{ */"
}

function openGroup(t) {
  title = t
  sub(/\n.*/, "", title)
  sub(/ *@name /, "", title)
  body = "\n" substr(t, index(t, "\n") + 1)
  # Doxygen would begin a formula with a capital.
  sub(/^\n (pDst|pSrcDst|w\(|sqrt|max)/, "\n @c &", body)
  sub(/@c \n /, "@c ", body)
  sub(/\n Statuses: /, "\n\n@par Statuses\n", body)
  sub(/\n Statuses, in this order: /, "\n\n@par Statuses\nIn this order: ", body)
  sub(/\n Further statuses?: /, "\n\n@par Further statuses\n", body)
  members = ""
  grouped = 1
}

function closeGroup(    id, brief, i, n, words, seen, parameters) {
  id = title
  if (id ~ /^[^ ]+ [a-z]/) gsub(/[^A-Za-z]/, "", id)
  else sub(/,.*/, "", id)
  brief = body ~ /[^ \n]/ ? sentence(body) : title "."

  n = split(members, words, /[^A-Za-z0-9_]+/)
  for (i = 1; i <= n; ++i) {
    if (!(words[i] in meaning) || words[i] in seen || body ~ "@param " words[i] " ") continue
    seen[words[i]] = 1
    parameters = parameters "\n@param " words[i] " " meaning[words[i]]
  }
  if (!sub(/\n @param/, parameters "\n@param", body)) body = body "\n" parameters

  print "/** @defgroup ovks" id " " title (kind == "@brief" ? ": " plain(brief) : "")
  print body "\n\n@par In this family\n@copydetails " family "\n@{ */"
  gsub(/&/, "\\\\&", brief)
  gsub(/@formula/, brief, members)
  printf "%s/** @} */\n", members
  grouped = 0
}

function plain(t) {
  gsub(/@[cp] /, "", t)
  return t
}
