#include <gtest/gtest.h>

#include <limits>

#include "tests/support/random_service.h"

namespace latchkey::test {
namespace {

class CreateSaltValueTest : public RandomService {
 protected:
  static constexpr bool kLetters = true;
  static constexpr bool kRaw = false;

  void ExpectFault(std::int32_t length, std::int32_t number, const char* text) {
    for (const bool lettersOnly : {kLetters, kRaw}) {
      LeaveEarlierFailure();
      EXPECT_EQ(api.CreateSaltValue(length, lettersOnly), u"");
      ExpectClearAndThen(RunTimeWrites(434, number, text));
      EXPECT_EQ(ValuesOf(record), AfterRunTimeFailure(434, number, text));
    }
  }
};

TEST_F(CreateSaltValueTest, LettersAreDrawnWithoutTheProvider) {
  EXPECT_EQ(api.CreateSaltValue(20, kLetters).size(), 20U);
  EXPECT_EQ(journal.All(), CallJournal::Entries{"Clear"});
}

TEST_F(CreateSaltValueTest, EveryLetterReseedsTheGenerator) {
  EXPECT_EQ(api.CreateSaltValue(20, kLetters).size(), 20U);
  EXPECT_EQ(probe.CountCalls("GetVolumeInformationA"), 20U);
}

TEST_F(CreateSaltValueTest, ALengthOfZeroGivesEmptyText) {
  EXPECT_EQ(api.CreateSaltValue(0, kLetters), u"");
  EXPECT_EQ(api.CreateSaltValue(0, kRaw), u"");
  EXPECT_FALSE(record.ErrorExists());
}

TEST_F(CreateSaltValueTest, OmittedArgumentsAreZeroAndFalse) {
  EXPECT_EQ(api.CreateSaltValue(), u"");
  EXPECT_EQ(journal.Count("CryptGenRandom"), 1U);
}

TEST_F(CreateSaltValueTest, RawIsRandomDataOfTheExactLength) {
  SetRandom("ABCD");
  EXPECT_EQ(api.CreateSaltValue(4), u"ABCD");
  EXPECT_EQ(journal.Named({"CryptGenRandom"}),
            CallJournal::Entries{calls::GenRandom(BytesOf("1234"))});
}

TEST_F(CreateSaltValueTest, RawRemovesTrailingSpacesThatCreateRandomKeeps) {
  SetRandom("AB  ");
  EXPECT_EQ(api.CreateRandom(4, true, false, true), u"AB  ");
  SetSeed();
  EXPECT_EQ(api.CreateSaltValue(4, kRaw), u"AB");
}

TEST_F(CreateSaltValueTest, RawOfOnlySpacesIsEmpty) {
  SetRandom(" ");
  EXPECT_EQ(api.CreateSaltValue(16, kRaw), u"");
  EXPECT_FALSE(record.ErrorExists());
}

TEST_F(CreateSaltValueTest, SuccessOnlyClearsTheRecord) {
  LeaveEarlierFailure();
  EXPECT_EQ(api.CreateSaltValue(3, kLetters).size(), 3U);
  EXPECT_EQ(ValuesOf(record), AfterClear());
}

TEST_F(CreateSaltValueTest, ANegativeLengthIsARunTimeFault) {
  ExpectFault(-1, 5, "Invalid procedure call or argument");
}

TEST_F(CreateSaltValueTest, DoubleTheLengthMustFit32Bits) {
  ExpectFault(-1'073'741'824, 5, "Invalid procedure call or argument");
  ExpectFault(-1'073'741'825, 6, "Overflow");
  ExpectFault(std::numeric_limits<std::int32_t>::min(), 6, "Overflow");
}

// Only short salts need a buffer of twice the length.
TEST_F(CreateSaltValueTest, ALongSaltNeedsNoBufferOfTwiceItsLength) {
  LeaveEarlierFailure();
  provider.FailAt("CryptAcquireContextA", CallPlan::kEveryCall);
  for (const std::int32_t length : {0x4000'0000, std::numeric_limits<std::int32_t>::max()}) {
    EXPECT_EQ(api.CreateSaltValue(length, kRaw), u"");
    EXPECT_EQ(ValuesOf(record), AfterApplicationFailure(710, 114, "Error acquiring provider"));
  }
}

TEST_F(CreateSaltValueTest, AFaultWhileDrawingALetterIsRecorded) {
  LeaveEarlierFailure();
  SetImpossibleSeed();
  EXPECT_EQ(api.CreateSaltValue(20, kLetters), u"");
  ExpectClearAndThen(RunTimeWrites(434, 11, "Division by zero"));
  EXPECT_EQ(ValuesOf(record), AfterRunTimeFailure(434, 11, "Division by zero"));
}

TEST_F(CreateSaltValueTest, AFaultAfterSomeLettersGivesEmptyText) {
  probe.SetTicks({1000, 1, 1000, 1, 1000, 6});  // the third draw divides by zero
  EXPECT_EQ(api.CreateSaltValue(20, kLetters), u"");
  EXPECT_EQ(record.ErrorLocationID(), 434);
}

TEST_F(CreateSaltValueTest, AFailureToClearTheRecordIsAFaultOfTheOperation) {
  spy.ThrowAt("Clear", 1, Fault(FaultNumber::TypeMismatch));
  EXPECT_EQ(api.CreateSaltValue(4, kLetters), u"");
  ExpectClearAndThen(RunTimeWrites(434, 13, "Type mismatch"));
}

TEST_F(CreateSaltValueTest, KeepsTheFailureThatCreateRandomRecorded) {
  LeaveEarlierFailure();
  provider.FailAt("CryptAcquireContextA", CallPlan::kEveryCall);
  EXPECT_EQ(api.CreateSaltValue(4, kRaw), u"");
  EXPECT_EQ(ValuesOf(record), AfterApplicationFailure(710, 114, "Error acquiring provider"));
}

TEST_F(CreateSaltValueTest, KeepsTheFaultThatCreateRandomRecorded) {
  LeaveEarlierFailure();
  SetImpossibleSeed();
  EXPECT_EQ(api.CreateSaltValue(4, kRaw), u"");
  EXPECT_EQ(ValuesOf(record), AfterRunTimeFailure(433, 11, "Division by zero"));
}

TEST_F(CreateSaltValueTest, AnUnrecordedFailureOfCreateRandomStaysUnrecorded) {
  LeaveEarlierFailure();
  provider.FailAt("CryptGenRandom", 1);
  EXPECT_EQ(api.CreateSaltValue(4, kRaw), u"");
  EXPECT_EQ(ValuesOf(record), AfterClear());
}

}  // namespace
}  // namespace latchkey::test
