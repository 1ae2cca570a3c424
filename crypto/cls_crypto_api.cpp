// State and properties of clsCryptoAPI, and what its operations share.
#include "crypto/cls_crypto_api.h"

#include "crypto/algorithms.h"
#include "crypto/byte_array_text.h"
#include "crypto/default_password.h"
#include "crypto/open_provider.h"
#include "diagnostics/error_trap.h"

namespace latchkey {
namespace {

constexpr std::int32_t kRandomPasswordLength = 20;
constexpr std::int16_t kRc4 = 1;

}  // namespace

clsCryptoAPI::clsCryptoAPI() = default;

// Closing the provider is the member's own work; hash and key handles never outlive an operation.
clsCryptoAPI::~clsCryptoAPI() = default;

void clsCryptoAPI::InputData(const ByteArray& arInData) { strInData = TextBytesOf(arInData); }

ByteArray clsCryptoAPI::OutputData() const { return arOutData; }

void clsCryptoAPI::EnhancedProvider(bool blnUseEnhanced) { blnEnhanced = blnUseEnhanced; }

void clsCryptoAPI::UseDefaultPWD(bool blnUseDefaultPWD) { blnDefaultPWD = blnUseDefaultPWD; }

void clsCryptoAPI::Password(ByteArray& arPWord) {
  // The old password goes first: it must not outlast a failure to make room for what replaces it.
  arPassword = ByteArray{0};
  if (arPWord.UpperBound() >= 1) {
    arPassword = arPWord;
    arPWord.Erase();
  } else if (blnDefaultPWD) {
    arPassword = BuildPassword(true);
  }
}

ByteArray clsCryptoAPI::Password() const { return arPassword; }

bool clsCryptoAPI::HasPassword() const { return arPassword.UpperBound() >= 1; }

bool clsCryptoAPI::HaveProvider() { return hCryptProv || AcquireProvider(); }

bool clsCryptoAPI::AcquireProvider() {
  bool acquired = false;
  RunTrapped(trap::kAcquireProvider, [&] {
    hCryptProv = OpenProvider(blnEnhanced);
    acquired = static_cast<bool>(hCryptProv);
    if (!acquired) {
      RecordApplicationFailure(blnEnhanced ? check::kEnhancedProvider : check::kStandardProvider);
    }
  });
  return acquired;
}

void clsCryptoAPI::GetHashAlgorithm(std::int16_t intHashType, std::int32_t& lngHashLength,
                                    provider::AlgorithmId& lngAlgorithm) {
  const HashAlgorithm algorithm = FindHashAlgorithm(intHashType);
  lngHashLength = algorithm.length;
  lngAlgorithm = algorithm.id;
}

void clsCryptoAPI::GetCipherAlgorithm(std::int16_t intCipherType,
                                      provider::AlgorithmId& lngAlgorithm) {
  lngAlgorithm = provider::kAlgorithmNone;
  RunTrapped(trap::kGetCipherAlgorithm, [&] {
    ClearErrorRecord();
    blnBlockCipher = intCipherType != kRc4;
    const provider::AlgorithmId found = FindCipherAlgorithm(intCipherType, blnEnhanced);
    if (found == provider::kAlgorithmNone) {
      RecordApplicationFailure(blnEnhanced ? check::kEnhancedCipherType : check::kBaseCipherType);
    }
    lngAlgorithm = found;
  });
}

ByteArray clsCryptoAPI::BuildPassword(bool blnUseDefault) {
  if (blnUseDefault) return DefaultPassword();
  Text letters = CreateSaltValue(kRandomPasswordLength, true);
  const WipeAtExit wipeLetters(letters);
  return StringToByteArray(TextView(letters));
}

}  // namespace latchkey
