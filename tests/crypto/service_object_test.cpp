// State, properties and destruction of the service object.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <new>

#include "latchkey/fault.h"
#include "tests/support/code_pages.h"
#include "tests/support/fault_of.h"
#include "tests/support/watched_service.h"

namespace latchkey::test {
namespace {

using testing::ElementsAre;

class ServiceObjectTest : public WatchedService {
 protected:
  // Checks that the cipher gets these bytes.
  void ExpectInput(const Bytes& bytes) {
    journal.Clear();
    EXPECT_TRUE(api.Encrypt(1, 1));
    EXPECT_THAT(journal.Named({"CryptEncrypt"}), ElementsAre(calls::Encrypt(++keys_, bytes)));
  }

 private:
  int keys_ = 0;
};

TEST_F(ServiceObjectTest, ANewObjectHasNoOutputAndNoPassword) {
  EXPECT_EQ(api.OutputData().Dimensions(), 0);
  EXPECT_EQ(ElementsOf(api.OutputData()), Bytes());
  EXPECT_EQ(ElementsOf(api.Password()), Bytes{0});
}

TEST_F(ServiceObjectTest, DoesNotCallTheProviderUntilAnOperationNeedsIt) {
  {
    clsCryptoAPI unused;
    unused.EnhancedProvider(true);
    unused.UseDefaultPWD(false);
    unused.InputData(ArrayOf("data"));
    ByteArray password = ArrayOf("secret");
    unused.Password(password);
    static_cast<void>(unused.ConvertStringToHex(u"abc"));
    EXPECT_FALSE(unused.Encrypt(0, 1));
    EXPECT_FALSE(unused.Encrypt(1, 0));
  }
  EXPECT_EQ(journal.Count("CryptAcquireContextA"), 0U);
  EXPECT_EQ(journal.Count("CryptReleaseContext"), 0U);
}

TEST_F(ServiceObjectTest, PropertiesDoNotWriteTheRecord) {
  LeaveEarlierFailure();
  api.EnhancedProvider(true);
  api.UseDefaultPWD(false);
  api.InputData(ArrayOf("data"));
  SetPassword("secret");
  static_cast<void>(api.OutputData());
  static_cast<void>(api.Password());
  EXPECT_TRUE(journal.All().empty());
}

TEST_F(ServiceObjectTest, InputDataOmitsTheLastElementAndTrailingSpaces) {
  api.InputData(ByteArray{1, 2, 3, 4});
  ExpectInput({1, 2, 3});
  api.InputData(ArrayOf(" a b  "));
  ExpectInput(BytesOf(" a b"));
  api.InputData(ByteArray{65, 0, 0});
  ExpectInput({65, 0});
  api.InputData(ByteArray{65, 9, 0});
  ExpectInput({65, 9});
  api.InputData(ByteArray{65});
  ExpectInput({});
}

TEST_F(ServiceObjectTest, InputDataKeepsEveryByteValue) {
  Bytes all(256);
  for (std::size_t i = 0; i < all.size(); ++i) all[i] = static_cast<std::uint8_t>(i);
  for (const CodePage* const page : {scope.Services().codePage, &DoubleBytePage()}) {
    scope.Services().codePage = page;
    for (std::ptrdiff_t i = 0; i < 256; i += 32) {
      const Bytes part(all.begin() + i, all.begin() + i + 32);
      api.InputData(ArrayOf(part));
      ExpectInput(part);
    }
  }
}

TEST_F(ServiceObjectTest, InputDataKeepsTheCallersArray) {
  const ByteArray data{1, 2, 3, 0};
  api.InputData(data);
  EXPECT_EQ(data, (ByteArray{1, 2, 3, 0}));
}

TEST_F(ServiceObjectTest, InputDataRefusesArraysWithoutAnElementZeroAndKeepsTheEarlierData) {
  LeaveEarlierFailure();
  api.InputData(ArrayOf("kept"));
  const Bytes four{1, 2, 3, 4};
  const auto refuses = [this](const ByteArray& array) {
    return FaultOf([&] { return api.InputData(array), 0; }) == 9;
  };
  EXPECT_TRUE(refuses(ByteArray()));
  EXPECT_TRUE(refuses(ByteArray::WithShape(1, 0, -1, {})));
  EXPECT_TRUE(refuses(ByteArray::WithShape(1, 1, 4, four)));
  EXPECT_TRUE(refuses(ByteArray::WithShape(1, -4, -1, four)));
  EXPECT_TRUE(refuses(ByteArray::WithShape(2, 0, 1, four)));
  EXPECT_TRUE(journal.All().empty());
  ExpectInput(BytesOf("kept"));
}

TEST_F(ServiceObjectTest, OutputDataIsACopy) {
  api.InputData(ArrayOf("data"));
  EXPECT_TRUE(api.Encrypt(1, 1));
  ByteArray output = api.OutputData();
  const Bytes before = ElementsOf(output);
  output.Erase();
  EXPECT_EQ(ElementsOf(api.OutputData()), before);
}

TEST_F(ServiceObjectTest, TheProviderIsReleasedOnceWithTheObject) {
  {
    clsCryptoAPI used;
    static_cast<void>(used.CreateHash(u"abc", 1));
    static_cast<void>(used.CreateHash(u"abc", 2));
    EXPECT_EQ(journal.Count("CryptReleaseContext"), 0U);
  }
  EXPECT_THAT(journal.Named({"CryptReleaseContext"}), ElementsAre(calls::ReleaseContext(1)));
}

TEST_F(ServiceObjectTest, EachObjectOpensASeparateProvider) {
  clsCryptoAPI other;
  static_cast<void>(api.CreateHash(u"abc", 1));
  static_cast<void>(other.CreateHash(u"abc", 1));
  EXPECT_THAT(provider.OpenHandles(), ElementsAre(ContextNo(1), ContextNo(2)));
}

TEST_F(ServiceObjectTest, AnObjectWhoseProviderCouldNotBeOpenedReleasesNothing) {
  {
    clsCryptoAPI unlucky;
    provider.FailAt("CryptAcquireContextA", CallPlan::kEveryCall);
    EXPECT_FALSE(unlucky.Encrypt(1, 1));
  }
  EXPECT_EQ(journal.Count("CryptReleaseContext"), 0U);
}

// Uses an object once and destroys it; the journal starts with the destruction.
class ServiceObjectEndTest : public WatchedService {
 protected:
  void UseAndEnd() {
    clsCryptoAPI used;
    static_cast<void>(used.CreateHash(u"abc", 1));
    LeaveEarlierFailure();
  }
};

TEST_F(ServiceObjectEndTest, ASuccessfulReleaseRecordsNothing) {
  UseAndEnd();
  EXPECT_THAT(journal.All(), ElementsAre(calls::ReleaseContext(1)));
}

TEST_F(ServiceObjectEndTest, AFailedReleaseRecordsNothing) {
  provider.FailAt("CryptReleaseContext", 1);
  UseAndEnd();
  EXPECT_THAT(journal.All(), ElementsAre(calls::ReleaseContext(1).Fails()));
}

TEST_F(ServiceObjectEndTest, AFaultOfTheReleaseIsNeitherRaisedNorRecorded) {
  provider.ThrowAt("CryptReleaseContext", 1, Fault(FaultNumber::Overflow));
  EXPECT_NO_THROW(UseAndEnd());
  provider.ThrowAt("CryptReleaseContext", 1, std::bad_alloc());
  EXPECT_NO_THROW(UseAndEnd());
  EXPECT_THAT(journal.All(), ElementsAre(calls::ReleaseContext(2).Throws()));
  EXPECT_EQ(ValuesOf(record), kEarlierFailure);
}

TEST_F(ServiceObjectEndTest, TheObjectMayOutliveTheRecord) {
  {
    clsCryptoAPI used;
    static_cast<void>(used.CreateHash(u"abc", 1));
    ThisThread().errorRecord.reset();
  }
  EXPECT_EQ(journal.Count("CryptReleaseContext"), 1U);
}

}  // namespace
}  // namespace latchkey::test
