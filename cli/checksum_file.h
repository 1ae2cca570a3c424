// Lines of checksum files, in the form of md5sum and its family.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace latchkey::cli {

// The line "name: OK" for the outcome "OK", without a line end. As in md5sum, a name with a line
// feed is escaped as WrittenLine does; a backslash or carriage return alone is not.
[[nodiscard]] std::string OutcomeLine(const std::string& name, std::string_view outcome);

struct Checksum {
  std::string digest;  // lower-case digits
  std::string name;
};

// The format of one algorithm's lines.
struct ChecksumForm {
  std::string tag;  // "MD5"
  std::size_t digestDigits = 0;
};

// How a line is written.
struct LineForm {
  bool tagged = false;  // "MD5 (name) = digest"
  bool zero = false;    // ends with NUL, without escapes
};

// The line "900150983cd24fb0d6963f7d28e17f72  name" with its end. Without `zero`, a name with a
// backslash or a line end is escaped (\\, \n, \r), and the line then begins with a backslash.
[[nodiscard]] std::string WrittenLine(const Checksum& checksum, const ChecksumForm& form,
                                      LineForm lineForm);

// The lines of a list, without their ends. A list may begin with a byte order mark; with one, it
// may be in UTF-16, as PowerShell writes it. Names are returned in UTF-8. Raises CommandError for
// invalid UTF-16.
[[nodiscard]] std::vector<std::string> ChecksumLines(const std::string& list);

// Parses a line without its line end. It has one of the two forms that WrittenLine writes; in the
// form with two spaces, an asterisk may replace the second one. Digits may be in either case.
// Returns nothing for a line of another form, with another number of digits or with another
// algorithm's tag.
[[nodiscard]] std::optional<Checksum> ReadChecksumLine(std::string_view line,
                                                       const ChecksumForm& form);

}  // namespace latchkey::cli
