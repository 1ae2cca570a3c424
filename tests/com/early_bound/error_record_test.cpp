// The error record of a thread through clsMain, and threads without one.
#include <thread>

#include "tests/com/com_client.h"

namespace latchkey::test {
namespace {

struct Record {
  short location = -1;
  short type = -1;
  LONG runTimeNumber = -1;
  std::wstring runTimeDescription;
  LONG appNumber = -1;
  std::wstring appDescription;
  VARIANT_BOOL exists = 1;
  short machineState = -1;
};

Record Read(_clsMain* main) {
  Record record;
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

HRESULT EncryptNothing(_clsCryptoAPI* api) {
  VARIANT_BOOL done = VARIANT_FALSE;
  return api->Encrypt(0, 0, &done);
}

HRESULT MakeNegativeRandom(_clsCryptoAPI* api) {
  BSTR random = nullptr;
  const HRESULT result =
      api->CreateRandom(-1, VARIANT_FALSE, VARIANT_FALSE, VARIANT_FALSE, &random);
  SysFreeString(random);
  return result;
}

using ErrorRecordTest = ClientTest;

TEST_F(ErrorRecordTest, ANewRecordIsEmpty) {
  const Record record = Read(Main());
  EXPECT_EQ(record.location, 0);
  EXPECT_EQ(record.type, 2);
  EXPECT_EQ(record.runTimeNumber, 0);
  EXPECT_EQ(record.runTimeDescription, L"");
  EXPECT_EQ(record.appNumber, 0);
  EXPECT_EQ(record.appDescription, L"");
  EXPECT_EQ(record.exists, VARIANT_FALSE);
  EXPECT_EQ(record.machineState, 0);
}

TEST_F(ErrorRecordTest, AFailureOfAnOperationShowsInAllProperties) {
  ASSERT_EQ(EncryptNothing(Api()), S_OK);
  const Record record = Read(Main());
  EXPECT_EQ(record.location, 718);
  EXPECT_EQ(record.type, 2);
  EXPECT_EQ(record.appNumber, 115);
  EXPECT_EQ(record.appDescription, L"Bad hash type");
  EXPECT_EQ(record.exists, VARIANT_TRUE);
  EXPECT_EQ(record.machineState, 0);
}

TEST_F(ErrorRecordTest, ARunTimeFailureShowsItsNumberAndDescription) {
  ASSERT_EQ(MakeNegativeRandom(Api()), S_OK);
  const Record record = Read(Main());
  EXPECT_EQ(record.location, 433);
  EXPECT_EQ(record.type, 1);
  EXPECT_EQ(record.runTimeNumber, 5);
  EXPECT_EQ(record.runTimeDescription, L"Invalid procedure call or argument");
  EXPECT_EQ(record.exists, VARIANT_TRUE);
}

TEST_F(ErrorRecordTest, AFailureIsNotSeenOnAnotherThread) {
  ASSERT_EQ(EncryptNothing(Api()), S_OK);
  Record other;
  std::thread([&] {
    const Apartment apartment;
    const auto main = CreateMain();
    other = Read(main.Get());
  }).join();
  EXPECT_EQ(other.exists, VARIANT_FALSE);
  EXPECT_EQ(Read(Main()).exists, VARIANT_TRUE);
}

TEST(ThreadWithoutMainTest, EveryOperationThatClearsTheRecordRaisesObjectNotSet) {
  const Apartment apartment;
  const auto api = CreateCryptoApi();
  EXPECT_EQ(EncryptNothing(api.Get()), FaultCode(91));
  const ErrorSeen seen = TakeErrorInfo();
  EXPECT_EQ(seen.source, L"Latchkey.clsCryptoAPI");
  EXPECT_EQ(seen.description,
            L"Object variable or With block variable not set: no clsMain exists on this thread");
  BSTR text = nullptr;
  EXPECT_EQ(api.Get()->CreateHash(nullptr, 1, 0, 0, 0, &text), FaultCode(91));
  EXPECT_EQ(MakeNegativeRandom(api.Get()), FaultCode(91));
}

TEST(ThreadWithoutMainTest, MembersThatDoNotUseTheRecordWork) {
  const Apartment apartment;
  const auto api = CreateCryptoApi();
  const auto timer = CreateTimer();
  BSTR hex = nullptr;
  VARIANT_BOOL upperCase = VARIANT_FALSE;
  EXPECT_EQ(api.Get()->ConvertStringToHex(Bstr(L"A").Get(), &upperCase, &hex), S_OK);
  EXPECT_EQ(Take(hex), L"41");
  LONG elapsed = -1;
  EXPECT_EQ(timer.Get()->GetElapsedTime(&elapsed), S_OK);
}

TEST(ThreadWithoutMainTest, ReleasingMainEmptiesTheRecordForTheWholeThread) {
  const Apartment apartment;
  const auto api = CreateCryptoApi();
  const auto first = CreateMain();
  CreateMain().Reset();
  short location = 7;
  EXPECT_EQ(first.Get()->get_ErrorLocationID(&location), FaultCode(91));
  EXPECT_EQ(location, 0);
  EXPECT_EQ(TakeErrorInfo().source, L"Latchkey.clsMain");
  EXPECT_EQ(EncryptNothing(api.Get()), FaultCode(91));
}

// The multithreaded apartment reaches the object through a proxy, whose stub runs on a thread of
// the system: all its calls have the same thread, and so the same record.
TEST(ThreadWithoutMainTest, ObjectsWorkForAClientInTheMultithreadedApartment) {
  const Apartment apartment(COINIT_MULTITHREADED);
  const auto main = CreateMain();
  const auto api = CreateCryptoApi();
  EXPECT_EQ(EncryptNothing(api.Get()), S_OK);
  EXPECT_EQ(Read(main.Get()).location, 718);
  SAFEARRAY* password = MakeByteArray(TextArray("secret"));
  EXPECT_EQ(api.Get()->put_Password(&password), S_OK);
  EXPECT_EQ(ElementsOf(password), Bytes{});
  const UniqueSafeArray owner(password);
}

// So all clients there share one record, and lose it together.
TEST(ThreadWithoutMainTest, AClientOfTheMultithreadedApartmentReplacesTheRecordOfAllOthers) {
  const Apartment apartment(COINIT_MULTITHREADED);
  const auto api = CreateCryptoApi();
  const auto main = CreateMain();
  EXPECT_EQ(EncryptNothing(api.Get()), S_OK);
  std::thread([] {
    const Apartment same(COINIT_MULTITHREADED);
    CreateMain().Reset();
  }).join();
  EXPECT_EQ(EncryptNothing(api.Get()), FaultCode(91));
  short location = 7;
  EXPECT_EQ(main.Get()->get_ErrorLocationID(&location), FaultCode(91));
}

}  // namespace
}  // namespace latchkey::test
