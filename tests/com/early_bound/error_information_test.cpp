// Error information for an early-bound client after a failed call.
#include <initializer_list>

#include "tests/com/com_client.h"

namespace latchkey::test {
namespace {

using ErrorInformationTest = ClientTest;

TEST_F(ErrorInformationTest, AFaultIsAnHresultWithSourceDescriptionAndInterface) {
  VARIANT value = OfType(VT_NULL);
  SAFEARRAY* array = nullptr;
  EXPECT_EQ(Api()->StringToByteArray(&value, &array), FaultCode(94));
  const ErrorSeen seen = TakeErrorInfo();
  ASSERT_TRUE(seen.present);
  EXPECT_EQ(seen.source, L"Latchkey.clsCryptoAPI");
  EXPECT_EQ(seen.description, L"Invalid use of Null");
  EXPECT_TRUE(IsEqualIID(seen.interfaceId, IID__clsCryptoAPI));
}

TEST_F(ErrorInformationTest, OnlyTheDefaultInterfacePromisesErrorInformation) {
  ISupportErrorInfo* support = nullptr;
  ASSERT_EQ(Api()->QueryInterface(IID_ISupportErrorInfo, reinterpret_cast<void**>(&support)), S_OK);
  const UniqueInterface<ISupportErrorInfo> owner(support);
  EXPECT_EQ(support->InterfaceSupportsErrorInfo(IID__clsCryptoAPI), S_OK);
  EXPECT_EQ(support->InterfaceSupportsErrorInfo(IID__clsMain), S_FALSE);
}

TEST_F(ErrorInformationTest, AResultIsClearedWhenTheCallFails) {
  VARIANT value = OfType(VT_NULL);
  auto* array = reinterpret_cast<SAFEARRAY*>(&value);
  EXPECT_EQ(Api()->StringToByteArray(&value, &array), FaultCode(94));
  EXPECT_EQ(array, nullptr);
  auto* text = reinterpret_cast<BSTR>(&value);
  SAFEARRAY* unallocated = nullptr;
  EXPECT_EQ(Api()->ByteArrayToString(&unallocated, &text), FaultCode(9));
  EXPECT_EQ(text, nullptr);
}

TEST_F(ErrorInformationTest, AResultIsClearedBeforeANullArgumentIsRefused) {
  auto* text = reinterpret_cast<BSTR>(this);
  EXPECT_EQ(Api()->ByteArrayToString(nullptr, &text), E_POINTER);
  EXPECT_EQ(text, nullptr);
}

TEST_F(ErrorInformationTest, ARefusedNullPointerClearsTheEarlierErrorInformation) {
  VARIANT value = OfType(VT_NULL);
  SAFEARRAY* array = nullptr;
  EXPECT_EQ(Api()->StringToByteArray(&value, &array), FaultCode(94));
  EXPECT_EQ(Api()->put_Password(nullptr), E_POINTER);
  EXPECT_FALSE(TakeErrorInfo().present);
  EXPECT_EQ(Api()->StringToByteArray(&value, &array), FaultCode(94));
  EXPECT_EQ(Api()->get_OutputData(nullptr), E_POINTER);
  EXPECT_FALSE(TakeErrorInfo().present);
}

TEST_F(ErrorInformationTest, NullPointersAreRefusedByEveryMemberOfTheServiceObject) {
  _clsCryptoAPI* const api = Api();
  EXPECT_EQ(api->put_InputData(nullptr), E_POINTER);
  EXPECT_EQ(api->get_OutputData(nullptr), E_POINTER);
  EXPECT_EQ(api->put_EnhancedProvider(nullptr), E_POINTER);
  EXPECT_EQ(api->get_Password(nullptr), E_POINTER);
  EXPECT_EQ(api->put_Password(nullptr), E_POINTER);
  EXPECT_EQ(api->put_UseDefaultPWD(nullptr), E_POINTER);
  EXPECT_EQ(api->CreateHash(nullptr, 1, 0, 0, 0, nullptr), E_POINTER);
  EXPECT_EQ(api->CreateRandom(1, 0, 0, 0, nullptr), E_POINTER);
  EXPECT_EQ(api->CreateSaltValue(1, 0, nullptr), E_POINTER);
  EXPECT_EQ(api->Decrypt(1, 1, nullptr), E_POINTER);
  EXPECT_EQ(api->Encrypt(1, 1, nullptr), E_POINTER);
  BSTR text = nullptr;
  SAFEARRAY* array = nullptr;
  VARIANT value = OfType(VT_NULL);
  VARIANT_BOOL flag = VARIANT_FALSE;
  EXPECT_EQ(api->ByteArrayToString(nullptr, &text), E_POINTER);
  EXPECT_EQ(api->ByteArrayToString(&array, nullptr), E_POINTER);
  EXPECT_EQ(api->StringToByteArray(nullptr, &array), E_POINTER);
  EXPECT_EQ(api->StringToByteArray(&value, nullptr), E_POINTER);
  EXPECT_EQ(api->ConvertStringFromHex(nullptr, nullptr), E_POINTER);
  EXPECT_EQ(api->ConvertStringToHex(nullptr, nullptr, &text), E_POINTER);
  EXPECT_EQ(api->ConvertStringToHex(nullptr, &flag, nullptr), E_POINTER);
}

TEST_F(ErrorInformationTest, NullPointersAreRefusedByEveryMemberOfTheOtherObjects) {
  _clsMain* const main = Main();
  EXPECT_EQ(main->get_ErrorLocationID(nullptr), E_POINTER);
  EXPECT_EQ(main->get_ErrorType(nullptr), E_POINTER);
  EXPECT_EQ(main->get_RTErrorNumber(nullptr), E_POINTER);
  EXPECT_EQ(main->get_RTErrorDescription(nullptr), E_POINTER);
  EXPECT_EQ(main->get_AppErrorNumber(nullptr), E_POINTER);
  EXPECT_EQ(main->get_AppErrorDescription(nullptr), E_POINTER);
  EXPECT_EQ(main->get_ErrorExists(nullptr), E_POINTER);
  EXPECT_EQ(main->get_ErrorMachineState(nullptr), E_POINTER);
  EXPECT_EQ(main->DoesInternetConnectionExist(nullptr), E_POINTER);
  EXPECT_EQ(CreateTimer().Get()->GetElapsedTime(nullptr), E_POINTER);
}

TEST_F(ErrorInformationTest, ValuesWithoutATextFormAreATypeMismatch) {
  SAFEARRAY* array = nullptr;
  for (const int type :
       std::initializer_list<int>{VT_DISPATCH, VT_UNKNOWN, VT_ERROR, VT_VARIANT, VT_BYREF | VT_BSTR,
                                  VT_BYREF | VT_VARIANT, VT_ARRAY | VT_I4, VT_RECORD, 0x0FFF}) {
    VARIANT value = OfType(type);
    ExpectFault(Api()->StringToByteArray(&value, &array), 13, L"Type mismatch");
  }
}

}  // namespace
}  // namespace latchkey::test
