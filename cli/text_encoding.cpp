#include "cli/text_encoding.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

#include "cli/alternatives.h"
#include "cli/failure.h"
#include "cli/utf8.h"
#include "platform/code_page_tables.h"

namespace latchkey::cli {
namespace {

constexpr std::string_view kPagePrefix = "windows-";
constexpr const char* kUtf8 = "utf-8";
constexpr const char* kUtf16 = "utf-16le";

constexpr char32_t kFirstSupplementary = 0x10000;

// Whether each surrogate is one of a pair.
bool IsWhole(std::span<const char16_t> text) noexcept {
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (IsLowSurrogate(text[i])) return false;
    if (!IsHighSurrogate(text[i])) continue;
    if (++i == text.size() || !IsLowSurrogate(text[i])) return false;
  }
  return true;
}

void Append(WipedText& text, char32_t code) {
  if (code < kFirstSupplementary) return text.push_back(static_cast<char16_t>(code));
  code -= kFirstSupplementary;
  text.push_back(static_cast<char16_t>(0xD800 + (code >> 10U)));
  text.push_back(static_cast<char16_t>(0xDC00 + (code & 0x3FFU)));
}

std::optional<WipedText> FromUtf8(std::span<const std::uint8_t> bytes) {
  WipedText text;
  text.reserve(bytes.size());
  // NOLINTNEXTLINE(*-reinterpret-cast): the same bytes as characters
  std::string_view rest(reinterpret_cast<const char*>(bytes.data()), bytes.size());
  while (!rest.empty()) {
    const Utf8Character first = FirstCharacter(rest);
    if (first.length == 0) return std::nullopt;
    Append(text, first.code);
    rest.remove_prefix(first.length);
  }
  return text;
}

// Of text without half pairs.
WipedBytes ToUtf8(std::span<const char16_t> text) {
  WipedBytes bytes(3 * text.size());
  std::size_t length = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    char32_t code = text[i];
    if (IsHighSurrogate(code)) code = CharacterOfPair(code, text[++i]);
    length += PutUtf8(code, bytes.data() + length);
  }
  bytes.resize(length);
  return bytes;
}

std::optional<WipedText> FromUtf16(std::span<const std::uint8_t> bytes) {
  if (bytes.size() % 2 != 0) return std::nullopt;
  WipedText text(bytes.size() / 2);
  for (std::size_t i = 0; i < text.size(); ++i) {
    text[i] = static_cast<char16_t>(bytes[2 * i] | bytes[2 * i + 1] << 8U);
  }
  if (!IsWhole(text)) return std::nullopt;
  return text;
}

WipedBytes ToUtf16(std::span<const char16_t> text) {
  WipedBytes bytes;
  bytes.reserve(2 * text.size());
  for (const char16_t unit : text) {
    bytes.push_back(static_cast<std::uint8_t>(unit & 0xFFU));
    bytes.push_back(static_cast<std::uint8_t>(unit >> 8U));
  }
  return bytes;
}

CommandError Missing(const std::string& name) {
  return CommandError(Failure{.text = "this system lacks the encoding " + name});
}

// "windows-1252" for "1252" and "cp1252".
std::string WithPagePrefix(const std::string& value) {
  const bool hasPrefix = value.size() > 2 && (value.starts_with("cp") || value.starts_with("CP"));
  const std::string number = value.substr(hasPrefix ? 2 : 0);
  const auto isDigit = [](char letter) { return letter >= '0' && letter <= '9'; };
  return !number.empty() && std::ranges::all_of(number, isDigit) ? std::string(kPagePrefix) + number
                                                                 : value;
}

}  // namespace

// A code page with one or two bytes for each character. Codes are big-endian numbers of their
// bytes.
class TextEncoding::Page {
 public:
  // Nothing if the system lacks the code page.
  static std::shared_ptr<const Page> Read(std::uint32_t number);

  [[nodiscard]] std::optional<WipedText> Decode(std::span<const std::uint8_t> bytes) const;
  [[nodiscard]] std::optional<WipedBytes> Encode(std::span<const char16_t> text) const;

 private:
  static CodePage::HighHalf HighHalfOf(const platform::CodePageTables& tables, bool multiByte);
  void Assign(std::uint32_t code, char16_t character) {
    characters_.at(code) = character;
    codes_.at(character) = static_cast<std::uint16_t>(code);
  }

  // 0 for no code and no character, except for code 0.
  std::array<char16_t, 0x10000> characters_{};
  std::array<std::uint16_t, 0x10000> codes_{};
};

// In a page with two-byte characters, their first bytes are no characters.
CodePage::HighHalf TextEncoding::Page::HighHalfOf(const platform::CodePageTables& tables,
                                                  bool multiByte) {
  CodePage::HighHalf half = tables.characters;
  if (multiByte) return half;
  const auto page = std::make_unique<CodePage>(
      tables.characters, [](char16_t) -> std::uint32_t { return CodePage::kDefaultCode; });
  for (std::size_t i = 0; i < half.size(); ++i) {
    half.at(i) = page->CharacterOf(static_cast<std::uint8_t>(0x80 + i));
  }
  return half;
}

std::shared_ptr<const TextEncoding::Page> TextEncoding::Page::Read(std::uint32_t number) {
  const auto tables = std::make_unique<platform::CodePageTables>();
  if (!platform::ReadCodePage(number, *tables)) return nullptr;
  const auto page = std::make_shared<Page>();
  const bool multiByte = platform::IsMultiByte(number);
  for (std::uint32_t unit = 0; multiByte && unit < tables->longCodes.size(); ++unit) {
    const std::uint32_t code = tables->longCodes.at(unit);
    if (code > 0xFF && code <= 0xFFFF) page->Assign(code, static_cast<char16_t>(unit));
  }
  for (std::uint32_t code = 0; code < 0x80; ++code) page->Assign(code, static_cast<char16_t>(code));
  const CodePage::HighHalf half = HighHalfOf(*tables, multiByte);
  for (std::uint32_t i = 0; i < half.size(); ++i) {
    if (half.at(i) != 0) page->Assign(0x80 + i, half.at(i));
  }
  return page;
}

std::optional<WipedText> TextEncoding::Page::Decode(std::span<const std::uint8_t> bytes) const {
  WipedText text;
  text.reserve(bytes.size());
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    std::uint32_t code = bytes[i];
    const bool isLead = code != 0 && characters_[code] == 0;
    if (isLead) {
      if (++i == bytes.size()) return std::nullopt;
      code = code << 8U | bytes[i];
      if (characters_[code] == 0) return std::nullopt;
    }
    text.push_back(characters_[code]);
  }
  return text;
}

std::optional<WipedBytes> TextEncoding::Page::Encode(std::span<const char16_t> text) const {
  WipedBytes bytes;
  bytes.reserve(2 * text.size());
  for (const char16_t character : text) {
    const std::uint16_t code = codes_[character];
    if (code == 0 && character != 0) return std::nullopt;
    if (code > 0xFF) bytes.push_back(static_cast<std::uint8_t>(code >> 8U));
    bytes.push_back(static_cast<std::uint8_t>(code & 0xFFU));
  }
  return bytes;
}

const std::vector<std::string>& TextEncodingNames() {
  static const std::vector<std::string> names{
      "windows-1250", "windows-1251", "windows-1252", "windows-1253",
      "windows-1254", "windows-1255", "windows-1256", "windows-1257",
      "windows-1258", "windows-874",  "windows-932",  "windows-936",
      "windows-949",  "windows-950",  kUtf8,          kUtf16};
  return names;
}

CLI::Validator EncodingName() {
  std::vector<std::string> names{kBytesEncoding};
  names.insert(names.end(), TextEncodingNames().begin(), TextEncodingNames().end());
  const auto replace = [oneOf = OneOf(names)](std::string& value) {
    std::string name = WithPagePrefix(value);
    std::string complaint = oneOf(name);
    if (!complaint.empty()) return complaint;
    value = name;
    return std::string();
  };
  return {replace, "", "the name of an encoding"};
}

TextEncoding::TextEncoding(const std::string& name) : name_(name) {
  if (!name.starts_with(kPagePrefix)) return;
  const std::string number = name.substr(kPagePrefix.size());
  page_ = Page::Read(static_cast<std::uint32_t>(std::stoul(number)));
  if (!page_) throw Missing(name);
}

std::optional<WipedText> TextEncoding::Decode(std::span<const std::uint8_t> bytes) const {
  if (page_) return page_->Decode(bytes);
  return name_ == kUtf8 ? FromUtf8(bytes) : FromUtf16(bytes);
}

std::optional<WipedBytes> TextEncoding::Encode(std::span<const char16_t> text) const {
  if (page_) return page_->Encode(text);
  if (!IsWhole(text)) return std::nullopt;
  return name_ == kUtf8 ? ToUtf8(text) : ToUtf16(text);
}

std::optional<WipedBytes> Converted(std::span<const std::uint8_t> bytes, const TextEncoding& from,
                                    const TextEncoding& to) {
  const std::optional<WipedText> text = from.Decode(bytes);
  return text ? to.Encode(*text) : std::nullopt;
}

bool BeginsWith(std::span<const std::uint8_t> bytes, std::span<const std::uint8_t> mark) noexcept {
  return bytes.size() >= mark.size() && std::ranges::equal(bytes.first(mark.size()), mark);
}

bool IsAscii(std::span<const std::uint8_t> bytes) noexcept {
  return std::ranges::all_of(bytes, [](std::uint8_t byte) { return byte < 0x80; });
}

}  // namespace latchkey::cli
