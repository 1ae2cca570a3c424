#include "latchkey/cls_main.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <memory>
#include <type_traits>

#include "diagnostics/thread_state.h"
#include "tests/support/fake_connectivity.h"
#include "tests/support/fault_of.h"
#include "tests/support/module_scope.h"
#include "tests/support/record_spy.h"

namespace latchkey::test {
namespace {

template <class Property, class Type>
constexpr bool kGives = std::is_same_v<std::invoke_result_t<Property, const clsMain&>, Type>;

static_assert(kGives<decltype(&clsMain::ErrorLocationID), std::int16_t>);
static_assert(kGives<decltype(&clsMain::ErrorType), std::int16_t>);
static_assert(kGives<decltype(&clsMain::RTErrorNumber), std::int32_t>);
static_assert(kGives<decltype(&clsMain::RTErrorDescription), Text>);
static_assert(kGives<decltype(&clsMain::AppErrorNumber), std::int32_t>);
static_assert(kGives<decltype(&clsMain::AppErrorDescription), Text>);
static_assert(kGives<decltype(&clsMain::ErrorExists), bool>);
static_assert(kGives<decltype(&clsMain::ErrorMachineState), std::int16_t>);

TEST(ClsMainTest, ConstructionMakesTheThreadsRecord) {
  const ModuleScope scope;
  EXPECT_EQ(ThisThread().errorRecord, nullptr);
  const clsMain main;
  EXPECT_EQ(ValuesOf(ErrorRecord()), RecordValues{});
}

TEST(ClsMainTest, PropertiesShowTheRecord) {
  const ModuleScope scope;
  const clsMain main;
  SetValues(ErrorRecord(), {-410, 1, -117, "message", -5, "fault", true, -9});
  EXPECT_EQ(main.ErrorLocationID(), -410);
  EXPECT_EQ(main.ErrorType(), 1);
  EXPECT_EQ(main.RTErrorNumber(), -5);
  EXPECT_EQ(main.RTErrorDescription(), u"fault");
  EXPECT_EQ(main.AppErrorNumber(), -117);
  EXPECT_EQ(main.AppErrorDescription(), u"message");
  EXPECT_TRUE(main.ErrorExists());
  EXPECT_EQ(main.ErrorMachineState(), -9);
}

TEST(ClsMainTest, ErrorTypeIsNarrowedToAnInteger) {
  const ModuleScope scope;
  const clsMain main;
  for (const std::int32_t type : {32767, -32768}) {
    ErrorRecord().ErrorType(type);
    EXPECT_EQ(main.ErrorType(), type);
  }
  for (const std::int32_t type : {32768, -32769}) {
    ErrorRecord().ErrorType(type);
    EXPECT_EQ(FaultOf([&] { return main.ErrorType(); }), 6) << type;
  }
}

TEST(ClsMainTest, AnotherOneReplacesTheRecord) {
  const ModuleScope scope;
  const clsMain first;
  ErrorRecord().ErrorExists(true);
  ErrorRecord().ErrorLocationID(410);
  const clsMain second;
  EXPECT_EQ(ValuesOf(ErrorRecord()), RecordValues{});
  EXPECT_FALSE(first.ErrorExists());
}

TEST(ClsMainTest, DestroyingAnyOneEmptiesTheSlot) {
  const ModuleScope scope;
  auto first = std::make_unique<clsMain>();
  const clsMain second;
  first.reset();
  EXPECT_EQ(ThisThread().errorRecord, nullptr);
  EXPECT_EQ(FaultOf([&] { return second.ErrorExists(); }), 91);
}

TEST(ClsMainTest, DestroyingTheLastOneEmptiesTheSlot) {
  const ModuleScope scope;
  { const clsMain main; }
  EXPECT_EQ(ThisThread().errorRecord, nullptr);
}

TEST(ClsMainTest, OneMadeAfterTheLastIsDestroyedMakesANewRecord) {
  const ModuleScope scope;
  { const clsMain main; }
  const clsMain main;
  EXPECT_FALSE(main.ErrorExists());
}

TEST(ClsMainTest, WithoutARecordEachPropertyRaisesObjectNotSetToTheClient) {
  const ModuleScope scope;
  const clsMain main;
  ThisThread().errorRecord.reset();
  const auto expectFaults = [&](auto... properties) {
    EXPECT_THAT((std::array{FaultOf([&] { return (main.*properties)(); })...}), testing::Each(91));
  };
  expectFaults(&clsMain::ErrorLocationID, &clsMain::ErrorType, &clsMain::RTErrorNumber,
               &clsMain::RTErrorDescription, &clsMain::AppErrorNumber,
               &clsMain::AppErrorDescription, &clsMain::ErrorExists, &clsMain::ErrorMachineState);
}

TEST(ClsMainTest, GivesTheConnectionAnswerAndWritesNothing) {
  ModuleScope scope;
  FakeConnectivity connectivity;
  scope.Services().connectivity = &connectivity;
  const clsMain main;
  for (const bool connected : {true, false}) {
    connectivity.connected = connected;
    EXPECT_EQ(main.DoesInternetConnectionExist(), connected);
  }
  EXPECT_EQ(connectivity.calls, 2);
  EXPECT_EQ(ValuesOf(ErrorRecord()), RecordValues{});
}

}  // namespace
}  // namespace latchkey::test
