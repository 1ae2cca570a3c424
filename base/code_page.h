// The single-byte (ANSI) code page through which characters and bytes become each other.
#pragma once

#include <array>
#include <cstdint>

namespace latchkey {

// A code page as tables, built once. Each of the 256 bytes is one character and no two are the
// same, so every byte becomes a character and back. Bytes 0 to 127 are ASCII. Immutable: any thread
// may read.
class CodePage {
 public:
  // What a character becomes that the code page cannot represent.
  static constexpr std::uint32_t kDefaultCode = '?';

  // The characters of bytes 128 to 255. 0 for a byte that is no character by itself, such as the
  // first of a two-byte character.
  using HighHalf = std::array<char16_t, 128>;
  // The code of a character that no single byte denotes: above 255 when the code page writes it in
  // several bytes (the bytes read as one big-endian number), else kDefaultCode.
  using LongCodeOf = std::uint32_t (*)(char16_t character);

  // Of several bytes with one character the lowest keeps it. The others, and those without one,
  // become the character of the byte's own number or, where that is taken, a private-use one.
  CodePage(const HighHalf& characters, LongCodeOf longCodeOf);

  [[nodiscard]] char16_t CharacterOf(std::uint8_t byte) const noexcept { return characters_[byte]; }

  // The code of `character`: its byte, or what LongCodeOf gives.
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
  std::array<std::uint8_t, 0x10000> bytes_{};  // 0 for all but NUL and the characters of a byte
  LongCodeOf longCodeOf_;
};

}  // namespace latchkey
