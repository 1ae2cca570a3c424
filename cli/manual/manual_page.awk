# Writes the manual page: awk -v version=VERSION -v command=COMMAND -f manual_page.awk latchkey.1.in, where COMMAND runs
# the command.
# The sections of the commands are made from their --help, so that the two cannot differ.

# Text that roff shows as it is.
function roff(text) {
  gsub(/\\/, "\\e", text)
  gsub(/-/, "\\-", text)
  return text ~ /^[.']/ ? "\\&" text : text
}

# The head of an option, "-o,--output OUT", or of an argument, "IN".
function head(names,  place, value) {
  sub(/ REQUIRED$/, "", names)
  if (names !~ /^-/) return ".I " roff(names)
  place = index(names, " ")
  value = place ? " \" " roff(substr(names, place + 1)) "\"" : ""
  if (place) names = substr(names, 1, place - 1)
  gsub(/,/, " ", names)
  return (value ? ".BI \"" : ".B \"") roff(names) "\"" value
}

function section(name,  help, line, number, example) {
  help = command " " name " --help"
  print ".SS " toupper(name)
  number = example = 0
  while ((help | getline line) > 0) {
    if (++number == 1) {
      print roff(line) ".\n.PP\n.B latchkey " name
    } else if (sub("^Usage: latchkey " name " ", "", line)) {
      sub(/OPTIONS/, "options", line)
      print line
    } else if (line ~ /^Example:/) {
      example = 1
      print ".PP\nExample:\n.PP\n.RS 2\n.nf"
    } else if (sub(/^      +/, "", line) || (example && sub(/^ +/, "", line))) {
      print roff(line)
    } else if (sub(/^  /, "", line)) {
      match(line "  ", /  +/)
      print ".TP\n" head(substr(line, 1, RSTART - 1))
      if (RSTART + RLENGTH <= length(line)) print roff(substr(line, RSTART + RLENGTH))
    }
  }
  print ".fi\n.RE"
  if (close(help) != 0) exit 1
}

function is_group(name,  help, line, found) {
  help = command " " name " --help"
  while ((help | getline line) > 0) if (line ~ /^Subcommands:/) found = 1
  if (close(help) != 0) exit 1
  return found
}

# The commands of a group, "records ", or all of them.
function sections(group,  help, line, listed) {
  help = command " " group "--help"
  while ((help | getline line) > 0) {
    if (line ~ /^Subcommands:/) {
      listed = 1
    } else if (listed && sub(/^  /, "", line)) {
      sub(/ .*/, "", line)
      if (is_group(group line)) sections(group line " ")
      else section(group line)
    }
  }
  if (close(help) != 0) exit 1
}

$0 == "@COMMANDS@" { sections(""); next }
{ gsub(/@VERSION@/, version); print }
