// Conversion between bytes and hexadecimal digits in ASCII.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

#include "base/hex_digits.h"
#include "base/secure_memory.h"

namespace latchkey {

[[nodiscard]] bool IsHexDigit(std::uint8_t character) noexcept;

// Uses the fastest code for this machine. Its buffer is wiped on destruction. Used by one thread.
class HexConverter {
 public:
  // Writes the two digits of each byte, in upper case.
  void Encode(std::span<const std::uint8_t> bytes, std::uint8_t* digits) noexcept;

  // Writes the bytes of an even number of digits in either case. Returns false if any character is
  // not a digit; all bytes are still written, as HexDigits::decode gives them.
  bool Decode(std::span<const std::uint8_t> digits, std::uint8_t* bytes) noexcept;

 private:
  static constexpr std::size_t kStep = 512;

  // Copies digits for the kernel. Returns whether all are digits.
  [[nodiscard]] bool Widen(std::span<const std::uint8_t> digits) noexcept;

  const HexDigits& kernel_ = FastestHexDigits();
  std::array<char16_t, kStep> digits_{};
  const WipeAtExit<decltype(digits_)> wipe_{digits_};
};

}  // namespace latchkey
