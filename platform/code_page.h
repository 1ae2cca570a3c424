// The single-byte (ANSI) code page through which characters and bytes become each other.
#pragma once

#include <array>
#include <cstdint>
#include <vector>

namespace latchkey::platform {

// A code page as tables, built once from what its 256 bytes denote. Immutable: any thread may read.
class CodePage {
 public:
  // Stands in the byte table for a byte that denotes no character by itself, such as the lead byte
  // of a two-byte character.
  static constexpr std::int32_t kNoCharacter = -1;
  // What a character becomes that the code page cannot represent.
  static constexpr std::uint32_t kDefaultCode = '?';

  using ByteTable = std::array<std::int32_t, 256>;
  // The code of a character that no single byte denotes: above 255 when the code page writes it in
  // several bytes (the bytes read as one big-endian number), else kDefaultCode.
  using LongCodeOf = std::uint32_t (*)(char16_t character);

  // `characters` holds for each byte its character, or kNoCharacter. Where two bytes denote the
  // same character, its code is the lower byte.
  CodePage(const ByteTable& characters, LongCodeOf longCodeOf);

  // The character that `byte` denotes, or kNoCharacter.
  [[nodiscard]] std::int32_t CharacterOf(std::uint8_t byte) const noexcept {
    return characters_[byte];
  }

  // The code of `character`: 0 to 255, or what LongCodeOf gives.
  [[nodiscard]] std::uint32_t CodeOf(char16_t character) const noexcept {
    const std::int32_t code = rows_[rowOf_[character >> 8]][character & 0xFF];
    return code != kNoCode ? static_cast<std::uint32_t>(code) : longCodeOf_(character);
  }

  // True when every byte becomes a character and back unchanged, so that data may stay bytes.
  [[nodiscard]] bool MapsEveryByte() const noexcept { return mapsEveryByte_; }

  // True when bytes 0 to 127 are the characters of the same number and back, as in almost every
  // code page.
  [[nodiscard]] bool KeepsAscii() const noexcept { return keepsAscii_; }

 private:
  static constexpr std::int32_t kNoCode = -1;

  // The code that stands for a character, in a row of its own where it needs one.
  std::int32_t& CodeEntry(char16_t character);

  ByteTable characters_;
  // The codes of the 256 characters with one high byte: the first row is without any.
  std::vector<std::array<std::int32_t, 256>> rows_;
  std::array<std::uint16_t, 256> rowOf_{};
  LongCodeOf longCodeOf_;
  bool mapsEveryByte_ = false;
  bool keepsAscii_ = true;
};

// The process's code page: on Windows the system's ANSI code page; on Linux Windows-1252 with the
// bytes 81, 8D, 8F, 90 and 9D (hexadecimal) denoting the control characters of the same value.
const CodePage& SystemCodePage();

}  // namespace latchkey::platform
