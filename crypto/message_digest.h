// The digest of exact bytes.
#pragma once

#include <cstdint>
#include <span>

#include "crypto/provider_handles.h"

namespace latchkey {

// One message: Begin, Add as often as wanted, Read once. Each gives false when the provider
// refuses, and the message is then over. The hash handle is destroyed with the object. Used by one
// thread.
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
