// Invalid calls.
#include "tests/com/late_bound/late_client.h"

namespace latchkey::test {
namespace {

class HostileCallsTest : public LateClientTest {
 protected:
  HRESULT Invoke(DISPPARAMS* arguments) const {
    return api.Invoke(api.IdOf(L"Encrypt"), DISPATCH_METHOD, arguments).result;
  }
};

TEST_F(HostileCallsTest, InvalidListsAreRefused) {
  VARIANT value = Value(1);
  DISPID name = 0;
  EXPECT_EQ(Invoke(nullptr), E_INVALIDARG);
  DISPPARAMS noValues = {nullptr, nullptr, 1, 0};
  EXPECT_EQ(Invoke(&noValues), E_INVALIDARG);
  DISPPARAMS noNames = {&value, nullptr, 1, 1};
  EXPECT_EQ(Invoke(&noNames), E_INVALIDARG);
  DISPPARAMS moreNamesThanValues = {&value, &name, 1, 2};
  EXPECT_EQ(Invoke(&moreNamesThanValues), E_INVALIDARG);
  DISPPARAMS endless = {&value, nullptr, 0xFFFFFFFF, 0};
  EXPECT_EQ(Invoke(&endless), DISP_E_BADPARAMCOUNT);
}

TEST_F(HostileCallsTest, UnknownMembersAndWrongKindsAreNotFound) {
  DISPPARAMS none = {};
  const DISPID inputData = api.IdOf(L"InputData");
  const DISPID encrypt = api.IdOf(L"Encrypt");
  for (const DISPID member : {0, -1, -4, 99, 0x7FFFFFFF}) {
    EXPECT_EQ(api.Invoke(member, DISPATCH_METHOD, &none).result, DISP_E_MEMBERNOTFOUND) << member;
  }
  EXPECT_EQ(api.Invoke(inputData, DISPATCH_PROPERTYGET, &none).result, DISP_E_MEMBERNOTFOUND);
  EXPECT_EQ(api.Invoke(encrypt, DISPATCH_PROPERTYPUT, &none).result, DISP_E_MEMBERNOTFOUND);
  EXPECT_EQ(api.Invoke(encrypt, 0, &none).result, DISP_E_MEMBERNOTFOUND);
}

// The type information describes them as inherited members of the dual interface.
TEST_F(HostileCallsTest, TheMethodsOfIDispatchItselfAreNotCalled) {
  DISPPARAMS none = {};
  for (const DISPID base : {0x60000000, 0x60010000}) {
    for (DISPID member = base; member < base + 8; ++member) {
      EXPECT_EQ(api.Invoke(member, DISPATCH_METHOD, &none).result, DISP_E_MEMBERNOTFOUND);
    }
  }
}

TEST_F(HostileCallsTest, AReservedInterfaceIdentifierMustBeNull) {
  std::wstring name = L"Encrypt";
  wchar_t* names = name.data();
  DISPID id = 0;
  DISPPARAMS none = {};
  EXPECT_EQ(Api()->GetIDsOfNames(IID_IUnknown, &names, 1, 0, &id), DISP_E_UNKNOWNINTERFACE);
  EXPECT_EQ(Api()->Invoke(api.IdOf(L"Encrypt"), IID_IUnknown, 0, DISPATCH_METHOD, &none, nullptr,
                          nullptr, nullptr),
            DISP_E_UNKNOWNINTERFACE);
}

TEST_F(HostileCallsTest, NullPointersForNamesAreRefused) {
  wchar_t* names[] = {nullptr, nullptr};
  DISPID ids[] = {7, 7};
  EXPECT_EQ(Api()->GetIDsOfNames(IID_NULL, nullptr, 1, 0, ids), E_INVALIDARG);
  EXPECT_EQ(Api()->GetIDsOfNames(IID_NULL, names, 1, 0, nullptr), E_INVALIDARG);
  EXPECT_EQ(Api()->GetIDsOfNames(IID_NULL, names, 0, 0, ids), E_INVALIDARG);
  EXPECT_EQ(Api()->GetIDsOfNames(IID_NULL, names, 2, 0, ids), DISP_E_UNKNOWNNAME);
  EXPECT_EQ(ids[0], DISPID_UNKNOWN);
  EXPECT_EQ(ids[1], DISPID_UNKNOWN);
}

TEST_F(HostileCallsTest, OnlyOneTypeInformationExists) {
  UINT count = 0;
  EXPECT_EQ(Api()->GetTypeInfoCount(nullptr), E_POINTER);
  EXPECT_EQ(Api()->GetTypeInfoCount(&count), S_OK);
  EXPECT_EQ(count, 1U);
  EXPECT_EQ(Api()->GetTypeInfo(0, 0, nullptr), E_POINTER);
  auto* typeInfo = reinterpret_cast<ITypeInfo*>(this);
  EXPECT_EQ(Api()->GetTypeInfo(1, 0, &typeInfo), DISP_E_BADINDEX);
  EXPECT_EQ(typeInfo, nullptr);
}

TEST_F(HostileCallsTest, ResultExceptionAndArgumentPointersMayBeNull) {
  VARIANT null = OfType(VT_NULL);
  DISPPARAMS given = {&null, nullptr, 1, 0};
  const auto invoke = [&](const wchar_t* member) {
    return Api()->Invoke(api.IdOf(member), IID_NULL, 0, DISPATCH_METHOD, &given, nullptr, nullptr,
                         nullptr);
  };
  EXPECT_EQ(invoke(L"StringToByteArray"), DISP_E_EXCEPTION);
  EXPECT_EQ(invoke(L"ByteArrayToString"), DISP_E_EXCEPTION);
  EXPECT_EQ(invoke(L"Encrypt"), DISP_E_TYPEMISMATCH);
  null = Value(1);
  EXPECT_EQ(invoke(L"StringToByteArray"), S_OK);
}

TEST_F(HostileCallsTest, NullAndCircularReferencesAreRefused) {
  VARIANT circle;
  circle = ReferenceTo(circle);
  VARIANT nowhere = OfType(VT_BYREF | VT_VARIANT);
  for (const VARIANT& shape : {circle, nowhere}) {
    EXPECT_EQ(api.Call(L"Encrypt", {shape}).result, DISP_E_TYPEMISMATCH);
    EXPECT_EQ(api.Call(L"ByteArrayToString", {shape}).result, DISP_E_TYPEMISMATCH);
    EXPECT_EQ(api.Call(L"StringToByteArray", {shape}).result, DISP_E_TYPEMISMATCH);
    EXPECT_EQ(api.Put(L"EnhancedProvider", shape).result, DISP_E_TYPEMISMATCH);
  }
}

// Every VARTYPE with a null payload: the call must return, with any result.
TEST_F(HostileCallsTest, NoTypeWithANullPayloadCrashesAMember) {
  for (int base = 0; base <= 80; ++base) {
    for (const int form :
         {0, int{VT_BYREF}, int{VT_ARRAY}, VT_BYREF | VT_ARRAY, int{VT_VECTOR}, int{VT_RESERVED}}) {
      const VARIANT value = OfType(base | form);
      EXPECT_EQ(api.Call(L"ConvertStringToHex", {value, value}).type & VT_BYREF, 0);
      EXPECT_EQ(api.Call(L"ByteArrayToString", {value}).type & VT_BYREF, 0);
      EXPECT_EQ(api.Call(L"StringToByteArray", {value}).type & VT_BYREF, 0);
      EXPECT_EQ(api.Call(L"Encrypt", {value, value}).type & VT_BYREF, 0);
      EXPECT_EQ(api.Put(L"EnhancedProvider", value).type, VT_EMPTY);
      EXPECT_EQ(api.Put(L"Password", value).type, VT_EMPTY);
    }
  }
}

TEST_F(HostileCallsTest, AFailedCallLeavesAnEmptyResult) {
  VARIANT null = OfType(VT_NULL);
  DISPPARAMS given = {&null, nullptr, 1, 0};
  VARIANT result = OfType(0x7777);
  EXPECT_EQ(Api()->Invoke(api.IdOf(L"StringToByteArray"), IID_NULL, 0, DISPATCH_METHOD, &given,
                          &result, nullptr, nullptr),
            DISP_E_EXCEPTION);
  EXPECT_EQ(V_VT(&result), VT_EMPTY);
}

}  // namespace
}  // namespace latchkey::test
