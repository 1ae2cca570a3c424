// clsCryptoAPI's Encrypt and Decrypt.
#include <algorithm>
#include <utility>

#include "crypto/byte_array_text.h"
#include "crypto/cipher_buffer.h"
#include "crypto/cipher_sites.h"
#include "crypto/cls_crypto_api.h"
#include "diagnostics/error_trap.h"
#include "platform/large_memory.h"

namespace latchkey {

// What differs between the two directions: where each failure is reported, and the cipher call.
struct CipherDirection {
  const CipherSites& sites;
  CipherStep (PasswordCipher::*apply)(std::span<std::uint8_t> buffer, std::uint32_t& length,
                                      bool final);
  bool zeroOutput;  // OutputData is a single zero until the operation succeeds, not unallocated
};

namespace {

constexpr CipherDirection kEncryption{kEncryptionSites, &PasswordCipher::Encrypt, false};
constexpr CipherDirection kDecryption{kDecryptionSites, &PasswordCipher::Decrypt, true};

constexpr bool kFinal = true;
// Behind the result.
constexpr std::size_t kTrailingZero = 1;

// The first failed step of deriving the key and running the cipher over the buffer. `length` is
// that of the data in the buffer, before and after.
CipherStep RunCipher(PasswordCipher& cipher, const CipherDirection& direction,
                     provider::AlgorithmId hashAlgorithm, provider::AlgorithmId cipherAlgorithm,
                     std::span<const std::uint8_t> password, const WipedBytes& input,
                     WorkingBytes& buffer, std::uint32_t& length) {
  const CipherStep derived = cipher.DeriveKey(hashAlgorithm, cipherAlgorithm, password);
  if (derived != CipherStep::Done) return derived;

  const std::size_t bufferLength = CipherBufferLength(input.size());
  buffer.Renew(bufferLength + kTrailingZero);
  platform::ExpectFilling(buffer.data(), buffer.size());
  std::copy(input.begin(), input.end(), buffer.data());
  length = static_cast<std::uint32_t>(input.size());
  const CipherStep applied =
      (cipher.*direction.apply)(buffer.All().first(bufferLength), length, kFinal);
  buffer.Touched(std::max<std::size_t>(length, input.size() + kLargestPadding) + kTrailingZero);
  return applied;
}

}  // namespace

WorkingText clsCryptoAPI::PasswordForKey() {
  if (!HasPassword()) {
    if (!blnDefaultPWD) return {};
    arPassword = BuildPassword(true);
  }
  return WorkingTextOf(arPassword);
}

bool clsCryptoAPI::TransformData(const CipherDirection& direction, std::int16_t intHashType,
                                 std::int16_t intCipherType) {
  const CipherSites& sites = direction.sites;
  bool result = false;
  WorkingText password;
  PasswordCipher cipher(hCryptProv);
  RunTrapped(sites.trap, [&] {
    ClearErrorRecord();
    // The earlier result is gone, and its memory holds the next.
    WorkingBytes buffer = arOutData.TakeStorage();
    if (direction.zeroOutput) arOutData = ByteArray{0};
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
    const CipherStep step = RunCipher(cipher, direction, hashAlgorithm, cipherAlgorithm,
                                      password.Trimmed(), strInData, buffer, length);
    if (step != CipherStep::Done) return RecordApplicationFailure(sites.SiteOf(step));

    arOutData = ByteArray::WithTrailingZero(std::move(buffer), length);
    result = true;
  });
  return result;
}

bool clsCryptoAPI::EncryptData(std::int16_t intHashType, std::int16_t intCipherType) {
  return TransformData(kEncryption, intHashType, intCipherType);
}

bool clsCryptoAPI::DecryptData(std::int16_t intHashType, std::int16_t intCipherType) {
  return TransformData(kDecryption, intHashType, intCipherType);
}

bool clsCryptoAPI::Encrypt(std::int16_t intHashType, std::int16_t intCipherType) {
  bool result = false;
  RunTrapped(trap::kEncrypt, [&] {
    ClearErrorRecord();
    result = EncryptData(intHashType, intCipherType);
  });
  return result;
}

bool clsCryptoAPI::Decrypt(std::int16_t intHashType, std::int16_t intCipherType) {
  bool result = false;
  RunTrapped(trap::kDecrypt, [&] {
    ClearErrorRecord();
    result = DecryptData(intHashType, intCipherType);
  });
  return result;
}

}  // namespace latchkey
