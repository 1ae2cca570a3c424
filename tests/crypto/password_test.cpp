// The Password property.
#include <gtest/gtest.h>

#include "tests/support/fault_of.h"
#include "tests/support/watched_service.h"

namespace latchkey::test {
namespace {

const Bytes kFour{1, 2, 3, 4};

class PasswordTest : public WatchedService {
 protected:
  // The fault raised by writing the property, which may erase the array.
  std::int32_t Write(ByteArray& array) {
    return FaultOf([&] { return api.Password(array), 0; });
  }
  std::int32_t Write(ByteArray&& array) { return Write(array); }

  [[nodiscard]] Bytes Stored() const { return ElementsOf(api.Password()); }

  // The password that is stored for a too short array while the default password is allowed.
  [[nodiscard]] static Bytes DefaultPassword() {
    clsCryptoAPI fresh;
    ByteArray none{0};
    fresh.Password(none);
    return ElementsOf(fresh.Password());
  }
};

TEST_F(PasswordTest, TwoBytesAreStoredAndTheCallersArrayIsErased) {
  ByteArray array{65, 66};
  EXPECT_EQ(Write(array), kNoFault);
  EXPECT_EQ(Stored(), (Bytes{65, 66}));
  EXPECT_EQ(array, ByteArray());
}

TEST_F(PasswordTest, StoresAllElementsWithTheLastOneAndSpaces) {
  EXPECT_EQ(Write(ByteArray{32, 65, 32, 32, 7}), kNoFault);
  EXPECT_EQ(Stored(), (Bytes{32, 65, 32, 32, 7}));
}

TEST_F(PasswordTest, ReadingReturnsACopy) {
  SetPassword("secret");
  ByteArray copy = api.Password();
  copy.Erase();
  EXPECT_EQ(DataOf(api.Password()), BytesOf("secret"));
}

TEST_F(PasswordTest, AReadPasswordCanBeWrittenBack) {
  SetPassword("secret");
  ByteArray copy = api.Password();
  clsCryptoAPI other;
  other.Password(copy);
  EXPECT_EQ(other.Password(), api.Password());
}

TEST_F(PasswordTest, AOneByteArrayStoresTheDefaultPassword) {
  EXPECT_EQ(Write(ByteArray{65}), kNoFault);
  EXPECT_GE(Stored().size(), 2U);
  EXPECT_EQ(Stored(), DefaultPassword());
}

TEST_F(PasswordTest, TheDefaultPasswordSurvivesConversionToTextAndBack) {
  const Bytes stored = DefaultPassword();
  ASSERT_GE(stored.size(), 2U);
  EXPECT_EQ(stored.back(), 0);
  EXPECT_NE(stored[stored.size() - 2], ' ');
}

TEST_F(PasswordTest, WithoutTheDefaultAOneByteArrayStoresASingleZero) {
  api.UseDefaultPWD(false);
  EXPECT_EQ(Write(ByteArray{65}), kNoFault);
  EXPECT_EQ(Stored(), Bytes{0});
}

TEST_F(PasswordTest, ATooShortArrayStaysWithTheCaller) {
  ByteArray array{65};
  EXPECT_EQ(Write(array), kNoFault);
  EXPECT_EQ(array, ByteArray{65});
}

TEST_F(PasswordTest, ANewPasswordReplacesTheEarlierOne) {
  SetPassword("a long password");
  SetPassword("short");
  EXPECT_EQ(DataOf(api.Password()), BytesOf("short"));
}

TEST_F(PasswordTest, ATooShortArrayDiscardsTheEarlierPassword) {
  SetPassword("secret");
  EXPECT_EQ(Write(ByteArray{65}), kNoFault);
  EXPECT_EQ(Stored(), DefaultPassword());

  SetPassword("secret");
  api.UseDefaultPWD(false);
  EXPECT_EQ(Write(ByteArray{65}), kNoFault);
  EXPECT_EQ(Stored(), Bytes{0});
}

TEST_F(PasswordTest, TheDefaultFlagDoesNotChangeAStoredPassword) {
  SetPassword("secret");
  api.UseDefaultPWD(false);
  api.UseDefaultPWD(true);
  EXPECT_EQ(DataOf(api.Password()), BytesOf("secret"));
}

TEST_F(PasswordTest, ARefusedArrayLeavesNoPasswordAndStaysWithTheCaller) {
  for (const ByteArray& shape : {ByteArray(), ByteArray::WithShape(2, 0, 1, kFour)}) {
    SetPassword("secret");
    ByteArray array = shape;
    EXPECT_EQ(Write(array), 9);
    EXPECT_EQ(Stored(), Bytes{0});
    EXPECT_EQ(array, shape);
  }
}

// .NET's new byte[0] arrives with the bounds 0 to -1.
TEST_F(PasswordTest, AnUpperBoundBelowOneIsNoPasswordWithAnyLowerBound) {
  for (const ByteArray& shape :
       {ByteArray::WithShape(1, 0, -1, {}), ByteArray::WithShape(1, 1, 0, {}),
        ByteArray::WithShape(1, -4, -1, kFour), ByteArray::WithShape(1, -3, 0, kFour)}) {
    for (const bool useDefault : {true, false}) {
      SetPassword("secret");
      api.UseDefaultPWD(useDefault);
      ByteArray array = shape;
      EXPECT_EQ(Write(array), kNoFault);
      EXPECT_EQ(Stored(), useDefault ? DefaultPassword() : Bytes{0});
      EXPECT_EQ(array, shape);
    }
  }
}

TEST_F(PasswordTest, AnArrayThatStartsAboveZeroIsStoredWithItsBoundsAndErased) {
  for (const ByteArray& shape :
       {ByteArray::WithShape(1, 1, 4, kFour), ByteArray::WithShape(1, 1, 1, Bytes{65}),
        ByteArray::WithShape(1, 2, 1, {})}) {
    ByteArray array = shape;
    EXPECT_EQ(Write(array), kNoFault);
    EXPECT_EQ(api.Password(), shape);
    EXPECT_EQ(array, ByteArray());
  }
}

TEST_F(PasswordTest, APasswordThatStartsAboveZeroIsAFaultOfTheOperationThatUsesIt) {
  api.InputData(ArrayOf("some data"));
  EXPECT_EQ(Write(ByteArray::WithShape(1, 1, 4, kFour)), kNoFault);
  LeaveEarlierFailure();
  EXPECT_FALSE(api.Encrypt(1, 1));
  EXPECT_EQ(ValuesOf(record), AfterRunTimeFailure(438, 9, "Subscript out of range"));
  EXPECT_EQ(api.OutputData(), ByteArray());
  LeaveEarlierFailure();
  EXPECT_FALSE(api.Decrypt(1, 1));
  EXPECT_EQ(ValuesOf(record), AfterRunTimeFailure(436, 9, "Subscript out of range"));
  EXPECT_EQ(ElementsOf(api.OutputData()), Bytes{0});
  LeaveEarlierFailure();
  EXPECT_EQ(api.CreateHash(u"abc", 1, true, true), u"");
  EXPECT_EQ(ValuesOf(record), AfterRunTimeFailure(432, 9, "Subscript out of range"));
  EXPECT_EQ(journal.Count("CryptCreateHash"), 0U);
  EXPECT_NE(api.CreateHash(u"abc", 1, true), u"");
  EXPECT_EQ(api.Password(), ByteArray::WithShape(1, 1, 4, kFour));
}

TEST_F(PasswordTest, ANegativeLowerBoundIsStoredAndReadFromElementZero) {
  const Bytes elements{1, 2, 65, 66, 0};
  ByteArray array = ByteArray::WithShape(1, -2, 2, elements);
  EXPECT_EQ(Write(array), kNoFault);
  EXPECT_EQ(Stored(), elements);
  EXPECT_EQ(api.Password().LowerBound(), -2);
  EXPECT_EQ(api.ByteArrayToString(api.Password()), u"AB");
}

TEST_F(PasswordTest, WritingNeedsNoRecord) {
  ThisThread().errorRecord.reset();
  EXPECT_EQ(Write(ByteArray{65, 66, 0}), kNoFault);
  EXPECT_EQ(Write(ByteArray{65}), kNoFault);
  EXPECT_EQ(Write(ByteArray()), 9);
}

}  // namespace
}  // namespace latchkey::test
