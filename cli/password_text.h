// Passwords as text: their lines, and their bytes in an encoding.
#pragma once

#include <algorithm>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "base/secure_memory.h"
#include "cli/text_encoding.h"

namespace latchkey::cli {

// The text of a file in UTF-8 or, if it begins with that BOM, UTF-16. The BOM is dropped. Nothing
// for bytes that are not text.
[[nodiscard]] std::optional<WipedText> TextOfFile(std::span<const std::uint8_t> bytes);

// Drops one line end (LF or CR LF) at the end.
template <class Text>
void DropLineEnd(Text& text) {
  if (text.empty() || text.back() != '\n') return;
  text.pop_back();
  if (!text.empty() && text.back() == '\r') text.pop_back();
}

template <class Text>
[[nodiscard]] bool HasLineEnd(const Text& text) noexcept {
  return std::ranges::find(text, '\n') != text.end();
}

// A password as the bytes of an encoding.
struct EncodedPassword {
  WipedBytes bytes;
  std::string encoding;
  bool hasNul = false;  // a zero character was appended
};

// The password in every encoding that has all its characters, and unchanged. Forms with equal bytes
// are returned once: as "bytes" for ASCII, otherwise with the name of the first such encoding.
[[nodiscard]] std::vector<EncodedPassword> AllForms(const WipedBytes& password,
                                                    const std::optional<WipedText>& text);

// AppendNul appends a zero character; AddFormsWithNul adds such a form for each form. Many programs
// hash the zero that ends a string.
void AppendNul(EncodedPassword& form);
void AddFormsWithNul(std::vector<EncodedPassword>& forms);

// The code page that a password with characters other than ASCII was most likely used in: the first
// page that has all its characters. Nothing if the password is neither UTF-8 nor UTF-16 with a BOM.
[[nodiscard]] std::optional<std::string> LikelyPage(std::span<const std::uint8_t> password);

}  // namespace latchkey::cli
