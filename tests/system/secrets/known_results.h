// Results of a secret that a search looks for, made without copies of the secret.
#pragma once

#include <gtest/gtest.h>

#include "base/faults.h"
#include "base/stack_wipe.h"
#include "crypto/algorithms.h"
#include "crypto/hexadecimal.h"
#include "crypto/message_digest.h"
#include "crypto/open_provider.h"
#include "tests/system/secrets/secret.h"

namespace latchkey::test {

// `hash` is a number of the component.
inline Secret DigestOf(std::int16_t hash, const Secret& secret) {
  const UniqueContext context = OpenProvider(false);
  const HashAlgorithm algorithm = FindHashAlgorithm(hash);
  const WipedBytes bytes = secret.Bytes();
  WipedBytes digest(static_cast<std::size_t>(algorithm.length));
  MessageDigest message;
  EXPECT_TRUE(message.Begin(context, algorithm.id) && message.Add(bytes) && message.Read(digest));
  return Secret(digest);
}

inline Secret DigitsOf(const Secret& secret) {
  Text digits;
  const WipeAtExit wipeDigits(digits);
  EncodeHex(secret.Bytes(), digits);
  return Secret(WipedBytes(digits.begin(), digits.end()));
}

// Calls the body in a separate stack frame, below that of the caller.
template <class Body>
[[gnu::noinline]] bool InItsFrame(Body& body) {
  return body();
}

// Whether the body succeeds. Without memory, a client's own copy may fail: exceptions are handled
// as in the interfaces.
template <class Body>
bool SucceedsInMemory(Body&& body) {
  try {
    return InItsFrame(body);
  } catch (...) {
    static_cast<void>(CurrentFault());
  }
  WipeStackFarBelow();
  return false;
}

}  // namespace latchkey::test
