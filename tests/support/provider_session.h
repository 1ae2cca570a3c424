// The platform's own provider, opened for a test.
#pragma once

#include <cstdint>
#include <span>

#include "provider/crypto_provider.h"
#include "tests/support/bytes.h"

namespace latchkey::test {

// The outcome of a provider call: 0, or the code of the failure. Used as
// EXPECT_EQ(ErrorOf(provider.CryptDestroyKey(key)), provider::kErrorInvalidParameter).
[[nodiscard]] std::uint32_t ErrorOf(bool succeeded);

// A verify context of one provider. Destroys its hashes and keys on destruction.
class ProviderSession {
 public:
  explicit ProviderSession(const char* providerName);
  ProviderSession(const ProviderSession&) = delete;
  ProviderSession& operator=(const ProviderSession&) = delete;
  ~ProviderSession();

  [[nodiscard]] provider::HCRYPTPROV Handle() const noexcept { return handle_; }

  // A hash of `data`. Like KeyOf, throws std::runtime_error with the error code on failure.
  [[nodiscard]] provider::HCRYPTHASH HashOf(provider::AlgorithmId algorithm,
                                            std::span<const std::uint8_t> data) const;

  // A key for `cipher`, derived from the hash of `password`.
  [[nodiscard]] provider::HCRYPTKEY KeyOf(provider::AlgorithmId cipher, provider::AlgorithmId hash,
                                          std::span<const std::uint8_t> password) const;

 private:
  provider::HCRYPTPROV handle_ = 0;
};

// Completes a hash and reads its value.
[[nodiscard]] Bytes ValueOf(provider::HCRYPTHASH hash);

// One call of CryptEncrypt or CryptDecrypt.
struct CipherResult {
  std::uint32_t error = 0;   // 0 or the code of the failure
  std::uint32_t length = 0;  // the length after the call
  Bytes data;                // the first `length` bytes of the buffer; empty after a failure

  friend bool operator==(const CipherResult&, const CipherResult&) = default;
};

// `room` is the buffer length that is passed to the call.
[[nodiscard]] CipherResult Encrypt(provider::HCRYPTKEY key, bool final, const Bytes& plaintext,
                                   std::uint32_t room);
[[nodiscard]] CipherResult Decrypt(provider::HCRYPTKEY key, bool final, const Bytes& ciphertext);

}  // namespace latchkey::test
