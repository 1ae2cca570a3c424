// The digest of exact bytes.
#pragma once

#include <cstdint>
#include <span>

#include "provider/provider_handles.h"

namespace latchkey {

// Hashes one message: call Begin, Add any number of times, and Read once. Each returns false if the
// provider refuses, and none may be called after that. Destroys the hash handle with the object.
// Used by one thread.
class MessageDigest {
 public:
  [[nodiscard]] bool Begin(const UniqueContext& context, provider::AlgorithmId algorithm);

  // Raises Overflow for a piece of 4 GiB or more.
  [[nodiscard]] bool Add(std::span<const std::uint8_t> data);

  // `digest` has the algorithm's length.
  [[nodiscard]] bool Read(std::span<std::uint8_t> digest);

 private:
  UniqueHash hash_;
};

}  // namespace latchkey
