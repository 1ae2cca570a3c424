#include "cli/checksum_file.h"

#include <algorithm>
#include <utility>

#include "base/hex_converter.h"
#include "cli/failure.h"
#include "cli/text_encoding.h"

namespace latchkey::cli {
namespace {

bool NeedsEscapes(std::string_view name) {
  return name.find_first_of("\\\n\r") != std::string_view::npos;
}

std::string Escaped(std::string_view name) {
  std::string escaped;
  for (const char character : name) {
    switch (character) {
      case '\\':
        escaped += "\\\\";
        break;
      case '\n':
        escaped += "\\n";
        break;
      case '\r':
        escaped += "\\r";
        break;
      default:
        escaped += character;
    }
  }
  return escaped;
}

// Nothing if a backslash precedes any other character.
std::optional<std::string> Unescaped(std::string_view escaped) {
  std::string name;
  for (std::size_t i = 0; i < escaped.size(); ++i) {
    if (escaped[i] != '\\') {
      name += escaped[i];
      continue;
    }
    if (++i == escaped.size()) return std::nullopt;
    switch (escaped[i]) {
      case '\\':
        name += '\\';
        break;
      case 'n':
        name += '\n';
        break;
      case 'r':
        name += '\r';
        break;
      default:
        return std::nullopt;
    }
  }
  return name;
}

// Lower-case digits, or nothing if the text is not `count` hexadecimal digits.
std::optional<std::string> Digits(std::string_view text, std::size_t count) {
  if (text.size() != count) return std::nullopt;
  std::string digits(text);
  for (char& character : digits) {
    if (!IsHexDigit(static_cast<std::uint8_t>(character))) return std::nullopt;
    if (character >= 'A' && character <= 'F') character = static_cast<char>(character - 'A' + 'a');
  }
  return digits;
}

struct Parts {
  std::string_view digest;
  std::string_view name;
};

std::optional<Parts> SplitPlain(std::string_view line, std::size_t digestDigits) {
  if (line.size() < digestDigits + 3 || line[digestDigits] != ' ') return std::nullopt;
  const char mode = line[digestDigits + 1];
  if (mode != ' ' && mode != '*') return std::nullopt;
  return Parts{line.substr(0, digestDigits), line.substr(digestDigits + 2)};
}

std::optional<Parts> SplitTagged(std::string_view line, const std::string& tag) {
  const std::string start = tag + " (";
  const std::size_t close = line.rfind(") = ");
  if (!line.starts_with(start) || close == std::string_view::npos || close <= start.size()) {
    return std::nullopt;
  }
  return Parts{line.substr(close + 4), line.substr(start.size(), close - start.size())};
}

// UTF-8 of a list in UTF-8 or UTF-16; a list without a byte order mark is returned as it is.
std::string Utf8Of(const std::string& list) {
  std::vector<std::uint8_t> bytes(list.begin(), list.end());
  if (BeginsWith(bytes, kUtf8Mark)) return list.substr(kUtf8Mark.size());
  if (BeginsWith(bytes, kSwappedUtf16Mark) && bytes.size() % 2 == 0) {
    for (std::size_t i = 0; i < bytes.size(); i += 2) std::swap(bytes[i], bytes[i + 1]);
  }
  if (!BeginsWith(bytes, kUtf16Mark)) return list;
  const auto converted = Converted(std::span(bytes).subspan(kUtf16Mark.size()),
                                   TextEncoding("utf-16le"), TextEncoding("utf-8"));
  if (converted) return {converted->begin(), converted->end()};
  throw CommandError(
      Failure{.text = "the list has a UTF-16 byte order mark, but is not valid UTF-16"});
}

}  // namespace

std::string WrittenLine(const Checksum& checksum, const ChecksumForm& form, LineForm lineForm) {
  const bool escape = !lineForm.zero && NeedsEscapes(checksum.name);
  const std::string name = escape ? Escaped(checksum.name) : checksum.name;
  return (escape ? "\\" : "") +
         (lineForm.tagged ? form.tag + " (" + name + ") = " + checksum.digest
                          : checksum.digest + "  " + name) +
         (lineForm.zero ? '\0' : '\n');
}

std::vector<std::string> ChecksumLines(const std::string& list) {
  const std::string text = Utf8Of(list);
  std::vector<std::string> lines;
  for (std::size_t start = 0; start < text.size();) {
    const std::size_t end = std::min(text.find('\n', start), text.size());
    const bool hasReturn = end > start && text[end - 1] == '\r';
    lines.push_back(text.substr(start, end - start - (hasReturn ? 1 : 0)));
    start = end + 1;
  }
  return lines;
}

std::string OutcomeLine(const std::string& name, std::string_view outcome) {
  const bool hasLineEnd = name.find('\n') != std::string::npos;
  const std::string shown = hasLineEnd ? "\\" + Escaped(name) : name;
  return shown + ": " + std::string(outcome);
}

std::optional<Checksum> ReadChecksumLine(std::string_view line, const ChecksumForm& form) {
  const bool isEscaped = line.starts_with('\\');
  if (isEscaped) line.remove_prefix(1);
  std::optional<Parts> parts = SplitPlain(line, form.digestDigits);
  if (!parts) parts = SplitTagged(line, form.tag);
  if (!parts) return std::nullopt;
  const std::optional<std::string> digest = Digits(parts->digest, form.digestDigits);
  const std::optional<std::string> name =
      isEscaped ? Unescaped(parts->name) : std::optional<std::string>(parts->name);
  if (!digest || !name || name->empty()) return std::nullopt;
  return Checksum{*digest, *name};
}

}  // namespace latchkey::cli
