// The error record of a thread through clsMain, and threads without one.
#include <thread>

#include "tests/com/com_client.h"

namespace latchkey::test {
namespace {

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

TEST_F(ErrorRecordTest, ANewRecordIsEmpty) { EXPECT_EQ(ReadRecord(Main()), ErrorRecord()); }

TEST_F(ErrorRecordTest, AFailureOfAnOperationShowsInAllProperties) {
  ASSERT_EQ(EncryptNothing(Api()), S_OK);
  EXPECT_EQ(ReadRecord(Main()), (ErrorRecord{718, 2, 0, L"", 115, L"Bad hash type", VARIANT_TRUE}));
}

TEST_F(ErrorRecordTest, ARunTimeFailureShowsItsNumberAndDescription) {
  ASSERT_EQ(MakeNegativeRandom(Api()), S_OK);
  EXPECT_EQ(ReadRecord(Main()),
            (ErrorRecord{433, 1, 5, L"Invalid procedure call or argument", 0, L"", VARIANT_TRUE}));
}

TEST_F(ErrorRecordTest, AFailureIsNotSeenOnAnotherThread) {
  ASSERT_EQ(EncryptNothing(Api()), S_OK);
  ErrorRecord other = ReadRecord(Main());
  std::thread([&] {
    const Apartment apartment;
    const auto main = CreateMain();
    other = ReadRecord(main.Get());
  }).join();
  EXPECT_EQ(other.exists, VARIANT_FALSE);
  EXPECT_EQ(ReadRecord(Main()).exists, VARIANT_TRUE);
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
  EXPECT_EQ(ReadRecord(main.Get()).location, 718);
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
