// The C interface for the searches, without copies of the passed data.
#pragma once

#include <gtest/gtest.h>

#include <array>

#include "c/call.h"
#include "tests/system/secrets/secret.h"

namespace latchkey::test {

// A handle of the C interface for one scope.
class OpenCrypto {
 public:
  OpenCrypto() : status_(latchkey_crypto_open(&crypto_)) {}
  OpenCrypto(const OpenCrypto&) = delete;
  OpenCrypto& operator=(const OpenCrypto&) = delete;
  ~OpenCrypto() { latchkey_crypto_close(crypto_); }

  [[nodiscard]] bool IsOpen() const { return status_ == LATCHKEY_OK; }
  [[nodiscard]] latchkey_crypto* Get() const { return crypto_; }

 private:
  latchkey_crypto* crypto_ = nullptr;
  int status_;
};

inline Secret DigestOf(std::int32_t hash, const Secret& secret) {
  const OpenCrypto crypto;
  const WipedBytes bytes = secret.Bytes();
  WipedBytes digest(20);
  std::size_t length = digest.size();
  EXPECT_EQ(latchkey_hash(crypto.Get(), hash, bytes.data(), bytes.size(), digest.data(), &length),
            LATCHKEY_OK);
  return Secret(std::span(digest).first(length));
}

inline Secret DigitsOf(const Secret& secret) {
  const WipedBytes bytes = secret.Bytes();
  WipedBytes digits(2 * bytes.size() + 1);
  std::size_t length = digits.size();
  EXPECT_EQ(latchkey_hex_encode(bytes.data(), bytes.size(), reinterpret_cast<char*>(digits.data()),
                                &length),
            LATCHKEY_OK);
  return Secret(std::span(digits).first(digits.size() - 1));
}

}  // namespace latchkey::test
