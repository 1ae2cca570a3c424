// RC2 with a raw key, for which the provider has no function.
#pragma once

#include <cstddef>

#include "tests/support/bytes.h"

namespace latchkey::test {

// The key lengths, in bytes, that the platform's RC2 accepts.
struct KeyLengths {
  std::size_t least;
  std::size_t most;
};
[[nodiscard]] KeyLengths RawRc2KeyLengths();

// Encrypts one block in CBC mode with a zero initialization vector; for one block this equals
// electronic codebook mode.
[[nodiscard]] Bytes EncryptRc2Block(const Bytes& key, unsigned effectiveBits, Bytes block);

}  // namespace latchkey::test
