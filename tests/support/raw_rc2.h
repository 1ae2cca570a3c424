// RC2 under a key given as it is, which the provider seam has no call for.
#pragma once

#include <cstddef>

#include "tests/support/bytes.h"

namespace latchkey::test {

// The key lengths in bytes that the platform's RC2 takes.
struct KeyLengths {
  std::size_t least;
  std::size_t most;
};
[[nodiscard]] KeyLengths RawRc2KeyLengths();

// One block, encrypted in CBC mode from a zero initialisation vector, which for one block is
// electronic codebook mode.
[[nodiscard]] Bytes EncryptRc2Block(const Bytes& key, unsigned effectiveBits, Bytes block);

}  // namespace latchkey::test
