#include "com/windows/crypto_api_object.h"

#include "com/windows/safe_array.h"
#include "com/windows/text_conversion.h"
#include "com/windows/variant_access.h"
#include "latchkey/fault.h"

namespace latchkey::com {
namespace {

VARIANT ToTextVariant(Text&& text) {
  VARIANT value;
  VariantInit(&value);
  V_BSTR(&value) = ToBstr(std::move(text));
  V_VT(&value) = VT_BSTR;
  return value;
}

// As for an unallocated array, before it is refused.
void DiscardPassword(clsCryptoAPI& api) {
  ByteArray none;
  try {
    api.Password(none);
  } catch (const Fault&) {  // NOLINT(bugprone-empty-catch): the expected refusal
  }
}

// Refuses elements other than bytes before the operation begins. The operation's first step
// discards the earlier password, so any other failure to read the new one must discard it too.
ByteArray ReadPassword(SAFEARRAY* array, clsCryptoAPI& api) {
  RequireBytes(array);
  try {
    return FromSafeArray(array);
  } catch (...) {
    DiscardPassword(api);
    throw;
  }
}

}  // namespace

STDMETHODIMP CryptoApiObject::put_InputData(SAFEARRAY** arInData) noexcept {
  if (arInData == nullptr) return RefuseNullPointer();
  return Run([&] { api_.InputData(FromSafeArray(*arInData)); });
}

STDMETHODIMP CryptoApiObject::get_OutputData(SAFEARRAY** result) noexcept {
  return Run(result, [&] { return ToSafeArray(api_.OutputData()); });
}

STDMETHODIMP CryptoApiObject::put_EnhancedProvider(VARIANT_BOOL* blnUseEnhanced) noexcept {
  if (blnUseEnhanced == nullptr) return RefuseNullPointer();
  return Run([&] { api_.EnhancedProvider(IsTrue(*blnUseEnhanced)); });
}

STDMETHODIMP CryptoApiObject::get_Password(SAFEARRAY** result) noexcept {
  return Run(result, [&] { return ToSafeArray(api_.Password()); });
}

STDMETHODIMP CryptoApiObject::put_Password(SAFEARRAY** arPWord) noexcept {
  if (arPWord == nullptr) return RefuseNullPointer();
  return Run([&] {
    ByteArray password = ReadPassword(*arPWord, api_);
    api_.Password(password);
    const bool erased = password.Dimensions() == 0;
    if (erased) EraseSafeArray(*arPWord);
  });
}

STDMETHODIMP CryptoApiObject::put_UseDefaultPWD(VARIANT_BOOL* blnUseDefaultPWD) noexcept {
  if (blnUseDefaultPWD == nullptr) return RefuseNullPointer();
  return Run([&] { api_.UseDefaultPWD(IsTrue(*blnUseDefaultPWD)); });
}

STDMETHODIMP CryptoApiObject::CreateHash(BSTR strInText, short intHashChoice,
                                         VARIANT_BOOL blnConvertToHex,
                                         VARIANT_BOOL blnAppendPassword,
                                         VARIANT_BOOL blnCaseSensitive, BSTR* result) noexcept {
  return Run(result, [&] {
    return ToBstr(api_.CreateHash(ViewOf(strInText), intHashChoice, IsTrue(blnConvertToHex),
                                  IsTrue(blnAppendPassword), IsTrue(blnCaseSensitive)));
  });
}

STDMETHODIMP CryptoApiObject::CreateRandom(LONG lngDataLength, VARIANT_BOOL blnRetExactLength,
                                           VARIANT_BOOL blnConvertToHex,
                                           VARIANT_BOOL blnUseUppercase, BSTR* result) noexcept {
  return Run(result, [&] {
    return ToBstr(api_.CreateRandom(lngDataLength, IsTrue(blnRetExactLength),
                                    IsTrue(blnConvertToHex), IsTrue(blnUseUppercase)));
  });
}

STDMETHODIMP CryptoApiObject::CreateSaltValue(LONG lngReturnLength, VARIANT_BOOL blnLetttersOnly,
                                              VARIANT* result) noexcept {
  return Run(result, [&] {
    return ToTextVariant(api_.CreateSaltValue(lngReturnLength, IsTrue(blnLetttersOnly)));
  });
}

STDMETHODIMP CryptoApiObject::Decrypt(short intHashType, short intCipherType,
                                      VARIANT_BOOL* result) noexcept {
  return Run(result, [&] { return ToVariantBool(api_.Decrypt(intHashType, intCipherType)); });
}

STDMETHODIMP CryptoApiObject::Encrypt(short intHashType, short intCipherType,
                                      VARIANT_BOOL* result) noexcept {
  return Run(result, [&] { return ToVariantBool(api_.Encrypt(intHashType, intCipherType)); });
}

STDMETHODIMP CryptoApiObject::ByteArrayToString(SAFEARRAY** arByte, BSTR* result) noexcept {
  return Run(result, arByte,
             [&] { return ToBstr(api_.ByteArrayToString(FromSafeArray(*arByte))); });
}

STDMETHODIMP CryptoApiObject::StringToByteArray(VARIANT* varInput, SAFEARRAY** result) noexcept {
  return Run(result, varInput,
             [&] { return ToSafeArray(api_.StringToByteArray(VariantText(varInput).Value())); });
}

STDMETHODIMP CryptoApiObject::ConvertStringFromHex(BSTR strHex, BSTR* result) noexcept {
  return Run(result, [&] { return ToBstr(api_.ConvertStringFromHex(ViewOf(strHex))); });
}

STDMETHODIMP CryptoApiObject::ConvertStringToHex(BSTR strInput, VARIANT_BOOL* blnRetUppercase,
                                                 BSTR* result) noexcept {
  return Run(result, blnRetUppercase, [&] {
    return ToBstr(api_.ConvertStringToHex(ViewOf(strInput), IsTrue(*blnRetUppercase)));
  });
}

}  // namespace latchkey::com
