// A whole message under a key.
#pragma once

#include "crypto/engine/derived_key.h"
#include "tests/support/bytes.h"

namespace latchkey::test {

// Returns the result, empty if the message is refused.
inline Bytes Whole(const DerivedKey& key, CipherDirection direction, Bytes message) {
  auto length = static_cast<std::uint32_t>(message.size());
  message.resize(message.size() + key.MostAdded());
  const bool done = key.Transform(direction, message, length);
  message.resize(done ? length : 0);
  return message;
}

}  // namespace latchkey::test
