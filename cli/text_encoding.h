// Encodings of text: the Windows code pages, UTF-8 and UTF-16.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "base/secure_memory.h"

namespace CLI {
class Validator;
}  // namespace CLI

namespace latchkey::cli {

// The names "windows-1250" to "windows-1258", "windows-874", "windows-932", "windows-936",
// "windows-949", "windows-950", "utf-8" and "utf-16le".
[[nodiscard]] const std::vector<std::string>& TextEncodingNames();

// The bytes of a text as they are.
inline constexpr const char* kBytesEncoding = "bytes";

// Replaces a value by the name that it means: kBytesEncoding, or one of TextEncodingNames. A value
// may be in any case and without hyphens, and a code page may be "1252" or "cp1252".
[[nodiscard]] CLI::Validator EncodingName();

// Converts text strictly: no character is replaced by a similar one or by a question mark. Code
// pages are those of Windows on every system, including the characters that they give undefined
// bytes. A character with several codes is converted from the one that Windows writes. Immutable
// and cheap to copy: any thread may use it.
class TextEncoding {
 public:
  // Takes a name of TextEncodingNames. Raises CommandError if the system lacks the code page.
  explicit TextEncoding(const std::string& name);

  [[nodiscard]] const std::string& Name() const noexcept { return name_; }

  // The text of bytes in this encoding. Nothing if they are not text in it. A BOM is returned as a
  // character.
  [[nodiscard]] std::optional<WipedText> Decode(std::span<const std::uint8_t> bytes) const;

  // The bytes of a text in this encoding. Nothing if the encoding lacks a character, or if the text
  // has half a surrogate pair.
  [[nodiscard]] std::optional<WipedBytes> Encode(std::span<const char16_t> text) const;

 private:
  class Page;

  std::string name_;
  std::shared_ptr<const Page> page_;  // null for UTF-8 and UTF-16
};

// Converts text from one encoding to another. Nothing if `bytes` are not text in `from`, or `to`
// lacks a character.
[[nodiscard]] std::optional<WipedBytes> Converted(std::span<const std::uint8_t> bytes,
                                                  const TextEncoding& from, const TextEncoding& to);

// The byte order marks of UTF-8 and of little-endian and big-endian UTF-16.
inline constexpr std::array<std::uint8_t, 3> kUtf8Mark{0xEF, 0xBB, 0xBF};
inline constexpr std::array<std::uint8_t, 2> kUtf16Mark{0xFF, 0xFE};
inline constexpr std::array<std::uint8_t, 2> kSwappedUtf16Mark{0xFE, 0xFF};

[[nodiscard]] bool BeginsWith(std::span<const std::uint8_t> bytes,
                              std::span<const std::uint8_t> mark) noexcept;

// Whether all bytes are below 80 (hexadecimal). Such bytes are the same text in every encoding but
// UTF-16.
[[nodiscard]] bool IsAscii(std::span<const std::uint8_t> bytes) noexcept;

}  // namespace latchkey::cli
