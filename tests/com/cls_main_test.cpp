#include "latchkey/cls_main.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <tuple>
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

TEST(ClsMainTest, AnotherOneAfterThatMakesANewRecord) {
  const ModuleScope scope;
  { const clsMain main; }
  const clsMain main;
  EXPECT_FALSE(main.ErrorExists());
}

struct Property {
  std::string name;
  std::function<void(const clsMain&)> read;
};

class PropertyWithoutRecordTest : public testing::TestWithParam<Property> {};

TEST_P(PropertyWithoutRecordTest, RaisesObjectNotSetToTheClient) {
  const ModuleScope scope;
  const clsMain main;
  ThisThread().errorRecord.reset();
  EXPECT_EQ(FaultOf([&] { GetParam().read(main); }), 91);
}

INSTANTIATE_TEST_SUITE_P(
    EachProperty, PropertyWithoutRecordTest,
    testing::Values(
        Property{"ErrorLocationID", [](const clsMain& m) { std::ignore = m.ErrorLocationID(); }},
        Property{"ErrorType", [](const clsMain& m) { std::ignore = m.ErrorType(); }},
        Property{"RTErrorNumber", [](const clsMain& m) { std::ignore = m.RTErrorNumber(); }},
        Property{"RTErrorDescription",
                 [](const clsMain& m) { std::ignore = m.RTErrorDescription(); }},
        Property{"AppErrorNumber", [](const clsMain& m) { std::ignore = m.AppErrorNumber(); }},
        Property{"AppErrorDescription",
                 [](const clsMain& m) { std::ignore = m.AppErrorDescription(); }},
        Property{"ErrorExists", [](const clsMain& m) { std::ignore = m.ErrorExists(); }},
        Property{"ErrorMachineState",
                 [](const clsMain& m) { std::ignore = m.ErrorMachineState(); }}),
    [](const auto& property) { return property.param.name; });

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
