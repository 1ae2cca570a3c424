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
  IErrorInfo* found = nullptr;
  if (GetErrorInfo(0, &found) != S_OK) return seen;
  const UniqueInterface<IErrorInfo> owner(found);
  BSTR source = nullptr;
  BSTR description = nullptr;
  found->GetGUID(&seen.interfaceId);
  found->GetSource(&source);
  found->GetDescription(&description);
  seen.present = true;
  seen.source = Take(source);
  seen.description = Take(description);
  return seen;
}

void ClientTest::ExpectFault(HRESULT result, int number, const wchar_t* description) {
  EXPECT_EQ(result, FaultCode(number));
  const ErrorSeen seen = TakeErrorInfo();
  EXPECT_TRUE(seen.present);
  EXPECT_EQ(seen.description, description);
}

}  // namespace latchkey::test
