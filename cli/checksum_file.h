// Lines of checksum files, in the form of md5sum and its family.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace latchkey::cli {

// "name: OK" for that outcome, without a line end. As in md5sum, only a name with a line feed has
// the escapes of WrittenLine here.
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

// "900150983cd24fb0d6963f7d28e17f72  name" with its end. Without `zero`, a name with a backslash or
// a line end is written with escapes (\\, \n, \r), and the line then begins with a backslash.
[[nodiscard]] std::string WrittenLine(const Checksum& checksum, const ChecksumForm& form,
                                      LineForm lineForm);

// The lines of a list, without their ends. A list may have a byte order mark and may be in UTF-16
// with one, as PowerShell writes it. The names become UTF-8. Raises CommandError for wrong UTF-16.
[[nodiscard]] std::vector<std::string> ChecksumLines(std::string list);

// Parses a line without its line end: the form above, with a space or an asterisk before the name
// and digits of either case, or "MD5 (name) = digest". Returns nothing for a line of another form,
// with another number of digits or with another algorithm's tag.
[[nodiscard]] std::optional<Checksum> ReadChecksumLine(std::string_view line,
                                                       const ChecksumForm& form);

}  // namespace latchkey::cli
