// A hash of names, the same on every machine.
#pragma once

#include <cstdint>
#include <string_view>

namespace latchkey::cli {

// The hash is FNV-1a with 64 bits, followed by the finishing steps of MurmurHash3, which spread the
// bits.
[[nodiscard]] constexpr std::uint64_t NameHash(std::string_view text) noexcept {
  std::uint64_t hash = 0xCBF29CE484222325U;
  for (const char character : text) {
    hash = (hash ^ static_cast<unsigned char>(character)) * 0x100000001B3U;
  }
  hash = (hash ^ (hash >> 33U)) * 0xFF51AFD7ED558CCDU;
  hash = (hash ^ (hash >> 33U)) * 0xC4CEB9FE1A85EC53U;
  return hash ^ (hash >> 33U);
}

}  // namespace latchkey::cli
