// Encodings of text: the Windows code pages, UTF-8 and UTF-16.
#pragma once

#include <CLI/CLI.hpp>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "base/secure_memory.h"

namespace latchkey::cli {

// UTF-16. Texts may be secret, so they are wiped.
using WipedText = WipedVector<char16_t>;

// "windows-1250" to "windows-1258", "windows-874", "windows-932", "windows-936", "windows-949",
// "windows-950", "utf-8" and "utf-16le".
[[nodiscard]] const std::vector<std::string>& TextEncodingNames();

// Replaces a value by the name that it means: in any case, with or without hyphens, and a code page
// also as "1252" or "cp1252". `others` are names that it takes besides.
[[nodiscard]] CLI::Validator EncodingName(const std::vector<std::string>& others = {});

// Converts text strictly: no character is replaced by a similar one or by a question mark. Code
// pages are those of Windows on every system, including the characters that they give undefined
// bytes. A character with several codes is converted from the one that Windows writes. Immutable
// and cheap to copy: any thread may use it.
class TextEncoding {
 public:
  // Takes a name of TextEncodingNames. Raises CommandError if the system lacks the code page.
  explicit TextEncoding(const std::string& name);

  [[nodiscard]] const std::string& Name() const noexcept { return name_; }

  // Nothing if `bytes` are not text in this encoding. A BOM is a character like others.
  [[nodiscard]] std::optional<WipedText> Decode(std::span<const std::uint8_t> bytes) const;

  // Nothing if the encoding lacks a character, or for half a surrogate pair.
  [[nodiscard]] std::optional<WipedBytes> Encode(std::span<const char16_t> text) const;

 private:
  class Page;

  std::string name_;
  std::shared_ptr<const Page> page_;  // null for UTF-8 and UTF-16
};

// The text of `bytes` in another encoding; nothing if either lacks it.
[[nodiscard]] std::optional<WipedBytes> Converted(std::span<const std::uint8_t> bytes,
                                                  const TextEncoding& from, const TextEncoding& to);

// Whether all bytes are below 80 (hexadecimal): then every encoding but UTF-16 has the same text.
[[nodiscard]] bool IsAscii(std::span<const std::uint8_t> bytes) noexcept;

}  // namespace latchkey::cli
