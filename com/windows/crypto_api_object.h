// clsCryptoAPI for COM clients.
#pragma once

#include "com/windows/automation_object.h"
#include "com/windows/latchkey.h"
#include "latchkey/cls_crypto_api.h"

namespace latchkey::com {

// Converts a client's arrays and texts to the component's types before an operation, and the
// results back afterwards. Keeps no data of the client after a call.
class CryptoApiObject final : public AutomationObject<_clsCryptoAPI> {
 public:
  CryptoApiObject() : AutomationObject(kCryptoApiClass) {}

  STDMETHODIMP put_InputData(SAFEARRAY** arInData) noexcept override;
  STDMETHODIMP get_OutputData(SAFEARRAY** result) noexcept override;
  STDMETHODIMP put_EnhancedProvider(VARIANT_BOOL* blnUseEnhanced) noexcept override;
  STDMETHODIMP get_Password(SAFEARRAY** result) noexcept override;
  STDMETHODIMP put_Password(SAFEARRAY** arPWord) noexcept override;
  STDMETHODIMP put_UseDefaultPWD(VARIANT_BOOL* blnUseDefaultPWD) noexcept override;
  STDMETHODIMP CreateHash(BSTR strInText, short intHashChoice, VARIANT_BOOL blnConvertToHex,
                          VARIANT_BOOL blnAppendPassword, VARIANT_BOOL blnCaseSensitive,
                          BSTR* result) noexcept override;
  STDMETHODIMP CreateRandom(LONG lngDataLength, VARIANT_BOOL blnRetExactLength,
                            VARIANT_BOOL blnConvertToHex, VARIANT_BOOL blnUseUppercase,
                            BSTR* result) noexcept override;
  STDMETHODIMP CreateSaltValue(LONG lngReturnLength, VARIANT_BOOL blnLetttersOnly,
                               VARIANT* result) noexcept override;
  STDMETHODIMP Decrypt(short intHashType, short intCipherType,
                       VARIANT_BOOL* result) noexcept override;
  STDMETHODIMP Encrypt(short intHashType, short intCipherType,
                       VARIANT_BOOL* result) noexcept override;
  STDMETHODIMP ByteArrayToString(SAFEARRAY** arByte, BSTR* result) noexcept override;
  STDMETHODIMP StringToByteArray(VARIANT* varInput, SAFEARRAY** result) noexcept override;
  STDMETHODIMP ConvertStringFromHex(BSTR strHex, BSTR* result) noexcept override;
  STDMETHODIMP ConvertStringToHex(BSTR strInput, VARIANT_BOOL* blnRetUppercase,
                                  BSTR* result) noexcept override;

 private:
  latchkey::clsCryptoAPI api_;
};

}  // namespace latchkey::com
