// State and properties of clsCryptoAPI, and what its operations share.
#include "latchkey/cls_crypto_api.h"

#include "crypto/algorithms.h"
#include "crypto/byte_array_text.h"
#include "crypto/crypto_api_state.h"
#include "crypto/default_password.h"
#include "crypto/open_provider.h"
#include "diagnostics/error_trap.h"

namespace latchkey {

clsCryptoAPI::clsCryptoAPI() : state_(std::make_unique<CryptoApiState>()) {}

// The state's handle closes the provider; hash and key handles never outlive an operation.
clsCryptoAPI::~clsCryptoAPI() = default;

void clsCryptoAPI::InputData(const ByteArray& arInData) {
  state_->strInData = InlineBytes(TextBytesOf(arInData.TextElements()));
}

ByteArray clsCryptoAPI::OutputData() const { return ShapedBytes(state_->arOutData).ToByteArray(); }

void clsCryptoAPI::EnhancedProvider(bool blnUseEnhanced) { state_->blnEnhanced = blnUseEnhanced; }

void clsCryptoAPI::UseDefaultPWD(bool blnUseDefaultPWD) {
  state_->blnDefaultPWD = blnUseDefaultPWD;
}

void clsCryptoAPI::Password(ByteArray& arPWord) {
  // Discards the old password first: it must be gone even if allocating the new one fails.
  ShapedBytes& arPassword = state_->arPassword;
  arPassword = ShapedBytes{0};
  if (arPWord.UpperBound() >= 1) {
    arPassword =
        ShapedBytes::WithShape(1, arPWord.LowerBound(), arPWord.UpperBound(), arPWord.Elements());
    arPWord.Erase();
  } else if (state_->blnDefaultPWD) {
    arPassword = DefaultPassword();
  }
}

ByteArray clsCryptoAPI::Password() const { return ShapedBytes(state_->arPassword).ToByteArray(); }

bool CryptoApiState::HasPassword() const { return arPassword.UpperBound() >= 1; }

bool CryptoApiState::HaveProvider() { return hCryptProv || AcquireProvider(); }

bool CryptoApiState::AcquireProvider() {
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

void CryptoApiState::GetHashAlgorithm(std::int16_t intHashType, std::int32_t& lngHashLength,
                                      provider::AlgorithmId& lngAlgorithm) {
  const HashAlgorithm algorithm = FindHashAlgorithm(intHashType);
  lngHashLength = algorithm.length;
  lngAlgorithm = algorithm.id;
}

void CryptoApiState::GetCipherAlgorithm(std::int16_t intCipherType,
                                        provider::AlgorithmId& lngAlgorithm) {
  lngAlgorithm = provider::kAlgorithmNone;
  RunTrapped(trap::kGetCipherAlgorithm, [&] {
    ClearErrorRecord();
    blnBlockCipher = intCipherType != kCipherRc4;
    const provider::AlgorithmId found = FindCipherAlgorithm(intCipherType, blnEnhanced);
    if (found == provider::kAlgorithmNone) {
      RecordApplicationFailure(blnEnhanced ? check::kEnhancedCipherType : check::kBaseCipherType);
    }
    lngAlgorithm = found;
  });
}

}  // namespace latchkey
