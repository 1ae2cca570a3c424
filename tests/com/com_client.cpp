#include "tests/com/com_client.h"

#include <algorithm>

namespace latchkey::test {

VARIANT OfType(int type) {
  VARIANT value = {};
  V_VT(&value) = static_cast<VARTYPE>(type);
  return value;
}

VARIANT Value(int number) {
  VARIANT value = OfType(VT_I4);
  V_I4(&value) = number;
  return value;
}

VARIANT Value(double number) {
  VARIANT value = OfType(VT_R8);
  V_R8(&value) = number;
  return value;
}

VARIANT Value(bool flag) {
  VARIANT value = OfType(VT_BOOL);
  V_BOOL(&value) = flag ? VARIANT_TRUE : VARIANT_FALSE;
  return value;
}

VARIANT Value(BSTR text) {
  VARIANT value = OfType(VT_BSTR);
  V_BSTR(&value) = text;
  return value;
}

VARIANT Value(SAFEARRAY* bytes) {
  VARIANT value = OfType(VT_ARRAY | VT_UI1);
  V_ARRAY(&value) = bytes;
  return value;
}

VARIANT LeftOut() {
  VARIANT value = OfType(VT_ERROR);
  V_ERROR(&value) = DISP_E_PARAMNOTFOUND;
  return value;
}

VARIANT ReferenceTo(VARIANT& variable) {
  VARIANT value = OfType(VT_BYREF | VT_VARIANT);
  V_VARIANTREF(&value) = &variable;
  return value;
}

VARIANT ReferenceTo(SAFEARRAY*& bytes) {
  VARIANT value = OfType(VT_BYREF | VT_ARRAY | VT_UI1);
  V_ARRAYREF(&value) = &bytes;
  return value;
}

VARIANT ReferenceTo(VARIANT_BOOL& flag) {
  VARIANT value = OfType(VT_BYREF | VT_BOOL);
  V_BOOLREF(&value) = &flag;
  return value;
}

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

void PrintTo(const ErrorRecord& record, std::ostream* out) {
  *out << "location " << record.location << ", type " << record.type << ", run-time failure "
       << record.runTimeNumber << ' ' << testing::PrintToString(record.runTimeDescription)
       << ", application failure " << record.appNumber << ' '
       << testing::PrintToString(record.appDescription) << ", exists " << record.exists
       << ", machine state " << record.machineState;
}

ErrorRecord ReadRecord(_clsMain* main) {
  ErrorRecord record{-1, -1, -1, L"", -1, L"", 1, -1};  // every property must be written
  BSTR runTimeDescription = nullptr;
  BSTR appDescription = nullptr;
  EXPECT_EQ(main->get_ErrorLocationID(&record.location), S_OK);
  EXPECT_EQ(main->get_ErrorType(&record.type), S_OK);
  EXPECT_EQ(main->get_RTErrorNumber(&record.runTimeNumber), S_OK);
  EXPECT_EQ(main->get_RTErrorDescription(&runTimeDescription), S_OK);
  EXPECT_EQ(main->get_AppErrorNumber(&record.appNumber), S_OK);
  EXPECT_EQ(main->get_AppErrorDescription(&appDescription), S_OK);
  EXPECT_EQ(main->get_ErrorExists(&record.exists), S_OK);
  EXPECT_EQ(main->get_ErrorMachineState(&record.machineState), S_OK);
  record.runTimeDescription = Take(runTimeDescription);
  record.appDescription = Take(appDescription);
  return record;
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

std::wstring ClientTest::Hash(const wchar_t* text, short hash) {
  BSTR digest = nullptr;
  EXPECT_EQ(Api()->CreateHash(Bstr(text).Get(), hash, VARIANT_TRUE, VARIANT_FALSE, VARIANT_FALSE,
                              &digest),
            S_OK);
  return Take(digest);
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
