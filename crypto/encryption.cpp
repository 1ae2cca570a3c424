// clsCryptoAPI's Encrypt and Decrypt.
#include <algorithm>
#include <utility>

#include "crypto/byte_array_text.h"
#include "crypto/cipher_buffer.h"
#include "crypto/cipher_sites.h"
#include "crypto/crypto_api_state.h"
#include "crypto/default_password.h"
#include "diagnostics/error_trap.h"
#include "platform/large_memory.h"

namespace latchkey {

namespace {

// The extra zero element after the result.
constexpr std::size_t kTrailingZero = 1;

// Derives the key, and encrypts or decrypts a copy of the input in `buffer`. Returns the step that
// failed, or Done. `length` becomes the length of the result in bytes.
CipherStep RunCipher(PasswordKey& key, const UniqueContext& context, const KeyRequest& request,
                     CipherDirection direction, std::span<const std::uint8_t> input,
                     InlineBytes& buffer, std::uint32_t& length) {
  const CipherStep derived = key.Derive(context, request);
  if (derived != CipherStep::Done) return derived;

  const std::size_t bufferLength = CipherBufferLength(input.size());
  buffer.Renew(bufferLength + kTrailingZero);
  platform::ExpectFilling(buffer.data(), buffer.size());
  std::copy(input.begin(), input.end(), buffer.data());
  length = static_cast<std::uint32_t>(input.size());
  const CipherStep applied = key.Transform(direction, buffer.All().first(bufferLength), length);
  buffer.LimitWipeTo(std::max<std::size_t>(length, input.size() + provider::kLargestPadding) +
                     kTrailingZero);
  return applied;
}

}  // namespace

InlineBytes CryptoApiState::PasswordForKey() {
  if (!HasPassword()) {
    if (!blnDefaultPWD) return {};
    arPassword = DefaultPassword();
  }
  return InlineBytes(TextBytesOf(arPassword.TextElements()));
}

bool CryptoApiState::TransformData(CipherDirection direction, std::int16_t intHashType,
                                   std::int16_t intCipherType) {
  const CipherSites& sites = SitesOf(direction);
  bool result = false;
  InlineBytes password;
  PasswordKey key;
  RunTrapped(sites.trap, [&] {
    ClearErrorRecord();
    // Discards the earlier result and uses its memory for the new one. Until a Decrypt succeeds the
    // output is a single zero; after a failed Encrypt it is unallocated.
    InlineBytes buffer = arOutData.TakeStorage();
    if (direction == CipherDirection::Decrypt) arOutData = ShapedBytes{0};
    std::int32_t hashLength = 0;
    provider::AlgorithmId hashAlgorithm = provider::kAlgorithmNone;
    GetHashAlgorithm(intHashType, hashLength, hashAlgorithm);
    if (hashAlgorithm == provider::kAlgorithmNone) {
      return RecordApplicationFailure(sites.hashType);
    }
    provider::AlgorithmId cipherAlgorithm = provider::kAlgorithmNone;
    GetCipherAlgorithm(intCipherType, cipherAlgorithm);
    if (cipherAlgorithm == provider::kAlgorithmNone) {
      return RecordApplicationFailure(sites.cipherType);
    }
    if (!HaveProvider()) return RecordApplicationFailure(sites.provider);

    password = PasswordForKey();
    std::uint32_t length = 0;
    const CipherStep step =
        RunCipher(key, hCryptProv, {hashAlgorithm, cipherAlgorithm, password.All()}, direction,
                  strInData.All(), buffer, length);
    if (step != CipherStep::Done) return RecordApplicationFailure(sites.SiteOf(step));

    arOutData = ShapedBytes::WithTrailingZero(std::move(buffer), length);
    result = true;
  });
  return result;
}

bool clsCryptoAPI::Encrypt(std::int16_t intHashType, std::int16_t intCipherType) {
  bool result = false;
  RunTrapped(trap::kEncrypt, [&] {
    ClearErrorRecord();
    result = state_->TransformData(CipherDirection::Encrypt, intHashType, intCipherType);
  });
  return result;
}

bool clsCryptoAPI::Decrypt(std::int16_t intHashType, std::int16_t intCipherType) {
  bool result = false;
  RunTrapped(trap::kDecrypt, [&] {
    ClearErrorRecord();
    result = state_->TransformData(CipherDirection::Decrypt, intHashType, intCipherType);
  });
  return result;
}

}  // namespace latchkey
