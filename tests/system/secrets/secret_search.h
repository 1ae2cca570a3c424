// A search for copies of secrets in the process's memory.
#pragma once

#include <array>
#include <bitset>
#include <cstdint>

#include "tests/system/secrets/process_memory.h"
#include "tests/system/secrets/secret.h"

namespace latchkey::test {

// Searches for secrets as bytes and as 16-bit characters, in parts that start at every eighth
// character, since the allocator overwrites the beginning of a freed block. Keeps no plain copy of
// the secrets.
class SecretSearch {
 public:
  // Each secret has at least as many characters as a part. `index`, below kMostSecrets, names it in
  // the result.
  void Add(std::size_t index, const Secret& secret, std::size_t partCharacters = 8);
  // Letters that differ in each run need longer parts: 12 of 52 letters occur in 100 MB by chance
  // with a probability below 1e-12.
  static constexpr std::size_t kLongPart = 12;

  static constexpr std::size_t kMostSecrets = 4;
  // The number of copies of each secret: the largest number of any one part, of either form.
  using Copies = std::array<int, kMostSecrets>;
  [[nodiscard]] Copies Count();

  // Prints the last address at which the latest Count found each part.
  void PrintPlaces() const;

  // The number of bytes that the latest Count searched.
  [[nodiscard]] std::size_t BytesSearched() const noexcept { return bytesSearched_; }

 private:
  struct Part {
    std::array<std::uint8_t, 2 * kLongPart> masked{};
    std::size_t size = 0;
    bool wide = false;  // 16-bit characters
    std::size_t secret = 0;
    int found = 0;
    std::uintptr_t last = 0;  // where it was found last
  };

  static constexpr std::size_t kMostParts = 1024;

  void AddPart(std::size_t index, std::span<const std::uint8_t> masked, bool wide);
  class Comparison;

  void Look(std::uintptr_t address, std::span<const std::uint8_t> piece, std::size_t owned);
  void Compare(std::uintptr_t address, std::span<const std::uint8_t> here);

  std::array<Part, kMostParts> parts_{};
  std::size_t partCount_ = 0;
  std::bitset<65536> beginnings_;  // by KeyOf, of the parts
  std::size_t bytesSearched_ = 0;
};

}  // namespace latchkey::test
