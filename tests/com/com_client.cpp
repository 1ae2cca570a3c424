#include "tests/com/com_client.h"

#include <algorithm>

namespace latchkey::test {

UniqueInterface<_clsMain> CreateMain() {
  return CreateObject<_clsMain>(CLSID_clsMain, IID__clsMain);
}

UniqueInterface<_clsCryptoAPI> CreateCryptoApi() {
  return CreateObject<_clsCryptoAPI>(CLSID_clsCryptoAPI, IID__clsCryptoAPI);
}

UniqueInterface<_clsTimer> CreateTimer() {
  return CreateObject<_clsTimer>(CLSID_clsTimer, IID__clsTimer);
}

UniqueBstr Bstr(std::wstring_view text) {
  return UniqueBstr(SysAllocStringLen(text.data(), static_cast<UINT>(text.size())));
}

std::wstring Take(BSTR text) {
  const UniqueBstr owner(text);
  return {text, text + SysStringLen(text)};
}

SAFEARRAY* MakeByteArray(const Bytes& bytes, LONG lowerBound) {
  SAFEARRAY* const array =
      SafeArrayCreateVector(VT_UI1, lowerBound, static_cast<ULONG>(bytes.size()));
  std::copy(bytes.begin(), bytes.end(), static_cast<std::uint8_t*>(array->pvData));
  return array;
}

Bytes ElementsOf(SAFEARRAY* array) {
  if (array == nullptr) return {};
  EXPECT_EQ(SafeArrayGetDim(array), 1U);
  const auto* const first = static_cast<const std::uint8_t*>(array->pvData);
  return {first, first + array->rgsabound[0].cElements};
}

Bytes Take(SAFEARRAY* array) {
  const UniqueSafeArray owner(array);
  return ElementsOf(array);
}

Bytes TextArray(std::string_view text) {
  Bytes bytes(text.begin(), text.end());
  bytes.push_back(0);
  return bytes;
}

ErrorSeen TakeErrorInfo() {
  ErrorSeen seen;
  UniqueInterface<IErrorInfo> found;
  if (GetErrorInfo(0, found.Put()) != S_OK) return seen;
  BSTR source = nullptr;
  BSTR description = nullptr;
  found.Get()->GetGUID(&seen.interfaceId);
  found.Get()->GetSource(&source);
  found.Get()->GetDescription(&description);
  seen.present = true;
  seen.source = Take(source);
  seen.description = Take(description);
  return seen;
}

VARIANT_BOOL ClientTest::Encrypt(short hash, short cipher) {
  VARIANT_BOOL done = 1;
  EXPECT_EQ(Api()->Encrypt(hash, cipher, &done), S_OK);
  return done;
}

VARIANT_BOOL ClientTest::Decrypt(short hash, short cipher) {
  VARIANT_BOOL done = 1;
  EXPECT_EQ(Api()->Decrypt(hash, cipher, &done), S_OK);
  return done;
}

void ClientTest::UseEnhancedProvider(bool use) {
  VARIANT_BOOL flag = use ? VARIANT_TRUE : VARIANT_FALSE;
  EXPECT_EQ(Api()->put_EnhancedProvider(&flag), S_OK);
}

void ClientTest::UseDefaultPassword(bool use) {
  VARIANT_BOOL flag = use ? VARIANT_TRUE : VARIANT_FALSE;
  EXPECT_EQ(Api()->put_UseDefaultPWD(&flag), S_OK);
}

Bytes ClientTest::StoredPassword() {
  SAFEARRAY* stored = nullptr;
  EXPECT_EQ(Api()->get_Password(&stored), S_OK);
  return Take(stored);
}

void ClientTest::ExpectFault(HRESULT result, int number, const wchar_t* description) {
  EXPECT_EQ(result, FaultCode(number));
  const ErrorSeen seen = TakeErrorInfo();
  EXPECT_TRUE(seen.present);
  EXPECT_EQ(seen.description, description);
}

}  // namespace latchkey::test
