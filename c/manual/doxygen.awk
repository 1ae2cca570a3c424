# Turns the comments of latchkey.h, which are plain C, into those of Doxygen: a filter for its input.

function heading(text) {
  gsub(/^\/\* -+ | -+ \*\/$/, "", text)
  return (groups++ ? "/** @} */\n" : "") "/** @name " text "\n * @{ */"
}

# A word and a full stop at the start of a paragraph of the file's comment are its title.
function titled(line) {
  if (line ~ /^ \* [A-Z][a-z]+\. /) sub(/\. /, "\n * ", line) sub(/^ \* /, " * @par ", line)
  return line
}

/^\/\* ----/ { print heading($0); next }

/^\/\*/ && !/NOLINT/ {
  is_file = NR == 1
  comment = ""
  for (line = $0; ; getline line) {
    comment = comment (is_file ? titled(line) : line) "\n"
    if (line ~ /\*\/$/) break
  }
  sub(/^\/\*/, is_file ? "/** @file\n *" : "/**", comment)
  if (is_file) print "/** @mainpage\n * @ref latchkey.h */"
  printf "%s", comment
  uses = 0
  next
}

# Declarations without a blank line between them share their comment.
/^$/ { comment = "" }
/^LATCHKEY_C_API/ && uses++ && comment != "" { printf "%s", comment }

# The comment after a member.
/^  [^/]*[;,0-9] +\/\* .*\*\/$/ { sub(/\/\* /, "/**< ") }

/^#endif \/\* LATCHKEY_H/ { print "/** @} */" }
{ print }
