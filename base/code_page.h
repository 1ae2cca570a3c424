// A code page that converts between characters and single bytes.
#pragma once

#include <array>
#include <cstdint>

namespace latchkey {

// A code page as tables, built once. Each of the 256 bytes has a different character, so every byte
// can be converted to a character and back. Bytes 0 to 127 are ASCII. Immutable: any thread may
// read.
class CodePage {
 public:
  // The code of a character that the code page cannot represent.
  static constexpr std::uint32_t kDefaultCode = '?';

  // The characters of bytes 128 to 255; 0 for a byte that is not a character by itself, such as the
  // first of a two-byte character.
  using HighHalf = std::array<char16_t, 128>;
  // The code of a character that has no single byte: above 255 if the code page writes it in
  // several bytes (read as one big-endian number), otherwise kDefaultCode.
  using LongCodeOf = std::uint32_t (*)(char16_t character);

  // If several bytes have the same character, the lowest keeps it. The others, and bytes without a
  // character, get the character with the byte's own number or, if that is taken, a private-use
  // character.
  CodePage(const HighHalf& characters, LongCodeOf longCodeOf);

  [[nodiscard]] char16_t CharacterOf(std::uint8_t byte) const noexcept { return characters_[byte]; }

  // The code of `character`: its byte, or the result of LongCodeOf.
  [[nodiscard]] std::uint32_t CodeOf(char16_t character) const noexcept {
    return IsOneByte(character) ? bytes_[character] : longCodeOf_(character);
  }

 private:
  [[nodiscard]] bool IsOneByte(char16_t character) const noexcept {
    return bytes_[character] != 0 || character == 0;
  }
  void Assign(std::size_t byte, char16_t character) noexcept;
  [[nodiscard]] char16_t FreeCharacterFor(std::size_t byte) const noexcept;

  std::array<char16_t, 256> characters_{};
  std::array<std::uint8_t, 0x10000> bytes_{};  // 0 also for characters without a byte
  LongCodeOf longCodeOf_;
};

}  // namespace latchkey
