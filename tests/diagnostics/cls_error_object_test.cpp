#include "diagnostics/cls_error_object.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

#include "diagnostics/record_clearing.h"
#include "tests/support/watched_module.h"

namespace latchkey::test {
namespace {

constexpr std::int16_t kMinInteger = -32768;
constexpr std::int16_t kMaxInteger = 32767;
constexpr std::int32_t kMinLong = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t kMaxLong = std::numeric_limits<std::int32_t>::max();

TEST(ErrorRecordTest, ANewRecordShowsNoFailure) {
  const clsErrorObject record;
  EXPECT_EQ(record.ErrorLocationID(), 0);
  EXPECT_EQ(record.ErrorType(), 2);
  EXPECT_EQ(record.AppErrorNumber(), 0);
  EXPECT_EQ(record.AppErrorDescription(), u"");
  EXPECT_EQ(record.RTErrorNumber(), 0);
  EXPECT_EQ(record.RTErrorDescription(), u"");
  EXPECT_FALSE(record.ErrorExists());
  EXPECT_EQ(record.MachineState(), 0);
}

TEST(ErrorRecordTest, ClearKeepsLocationAndNumbersOnly) {
  clsErrorObject record;
  SetValues(record, {410, 1, 117, "message", 5, "fault", true, 9});
  record.Clear();
  EXPECT_EQ(ValuesOf(record), (RecordValues{410, 2, 117, "", 5, "", false, 0}));
}

// The steps of Clear, on a record that records every step and can make it fail.
class ClearStepTest : public WatchedModule {
 protected:
  void Clear() { ClearStepByStep(SpiedErrorRecord()); }
};

TEST_F(ClearStepTest, HappensInOrder) {
  Clear();
  EXPECT_EQ(journal.All(), (CallJournal::Entries{{"ErrorType", 2},
                                                 {"RTErrorDescription", ""},
                                                 {"AppErrorDescription", ""},
                                                 {"ErrorExists", false},
                                                 {"MachineState", 0}}));
}

struct FailingStep {
  std::string member;
  RecordValues left;  // after Clear of {410, 1, 117, "message", 5, "fault", true, 9}
};

class FailingClearTest : public ClearStepTest, public testing::WithParamInterface<FailingStep> {};

TEST_P(FailingClearTest, SkipsTheStepAndDoesTheOthers) {
  SetValues(record, {410, 1, 117, "message", 5, "fault", true, 9});
  spy.ThrowAt(GetParam().member, 1, std::runtime_error("refused"));
  Clear();
  EXPECT_EQ(ValuesOf(record), GetParam().left);
}

INSTANTIATE_TEST_SUITE_P(
    EachStep, FailingClearTest,
    testing::Values(FailingStep{"ErrorType", {410, 1, 117, "", 5, "", false, 0}},
                    FailingStep{"RTErrorDescription", {410, 2, 117, "", 5, "fault", false, 0}},
                    FailingStep{"AppErrorDescription", {410, 2, 117, "message", 5, "", false, 0}},
                    FailingStep{"ErrorExists", {410, 2, 117, "", 5, "", true, 0}},
                    FailingStep{"MachineState", {410, 2, 117, "", 5, "", false, 9}}),
    [](const auto& step) { return step.param.member; });

TEST(ErrorRecordTest, ReturnsNumbersUnchanged) {
  clsErrorObject record;
  for (const std::int16_t value : {kMinInteger, std::int16_t{-1}, kMaxInteger}) {
    record.ErrorLocationID(value);
    EXPECT_EQ(record.ErrorLocationID(), value);
    record.AppErrorNumber(value);
    EXPECT_EQ(record.AppErrorNumber(), value);
    record.MachineState(value);
    EXPECT_EQ(record.MachineState(), value);
  }
  for (const std::int32_t value : {kMinLong, -1, kMaxLong}) {
    record.ErrorType(value);
    EXPECT_EQ(record.ErrorType(), value);
    record.RTErrorNumber(value);
    EXPECT_EQ(record.RTErrorNumber(), value);
  }
}

TEST(ErrorRecordTest, ReturnsTheFlagUnchanged) {
  clsErrorObject record;
  record.ErrorExists(true);
  EXPECT_TRUE(record.ErrorExists());
  record.ErrorExists(false);
  EXPECT_FALSE(record.ErrorExists());
}

TEST(ErrorRecordTest, ReturnsTextsUnchanged) {
  clsErrorObject record;
  const Text withNul(u"before\0behind", 13);
  const Text beyondTheReserve(1000, u'\u20AC');
  for (const Text& value : {Text(u"text"), withNul, beyondTheReserve, Text()}) {
    record.AppErrorDescription(value);
    EXPECT_EQ(record.AppErrorDescription(), value);
    record.RTErrorDescription(value);
    EXPECT_EQ(record.RTErrorDescription(), value);
  }
}

TEST(ErrorRecordTest, EachPropertyHasASeparateField) {
  clsErrorObject record;
  const RecordValues distinct{401, -1, 102, "application", -3, "run-time", true, -4};
  SetValues(record, distinct);
  EXPECT_EQ(ValuesOf(record), distinct);
}

TEST(ErrorRecordTest, KeepsACopyOfATextRatherThanTheCallers) {
  clsErrorObject record;
  Text text = u"as written";
  record.AppErrorDescription(text);
  record.RTErrorDescription(text);
  text.assign(text.size(), u'x');
  EXPECT_EQ(record.AppErrorDescription(), u"as written");
  EXPECT_EQ(record.RTErrorDescription(), u"as written");
}

}  // namespace
}  // namespace latchkey::test
