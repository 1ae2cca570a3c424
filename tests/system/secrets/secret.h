// A secret that a test knows without a plain copy in memory.
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <vector>

#include "base/secure_memory.h"
#include "latchkey/byte_array.h"
#include "latchkey/types.h"

namespace latchkey::test {

// Up to 128 bytes, kept under a mask. Results of the members are wiped on destruction.
class Secret {
 public:
  static constexpr std::size_t kMostBytes = 128;

  Secret() = default;
  explicit Secret(std::span<const std::uint8_t> bytes);
  // The code-page bytes of a text.
  explicit Secret(TextView text);

  // Other letters at each call, the same in each run (test_seed.h).
  static Secret Random(std::size_t length);

  [[nodiscard]] std::size_t Size() const noexcept { return size_; }

  [[nodiscard]] WipedBytes Bytes() const;
  // The same with the trailing zero of a byte array.
  [[nodiscard]] ByteArray Array() const;
  // In 16-bit characters.
  [[nodiscard]] WipedText Characters() const;

  // Copies to `target`, which has no more elements than the secret: bytes, or 16-bit characters.
  void CopyTo(std::span<std::uint8_t> target) const;
  void CopyTo(std::span<char16_t> target) const;

  // One byte under the mask.
  [[nodiscard]] std::uint8_t Masked(std::size_t index) const { return masked_.at(index); }
  static constexpr std::uint8_t kMask = 0xA5;

 private:
  std::array<std::uint8_t, kMostBytes> masked_{};
  std::size_t size_ = 0;
};

}  // namespace latchkey::test
