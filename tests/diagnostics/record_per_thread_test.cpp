// Each thread has its own error record, step number and state.
#include <gtest/gtest.h>

#include <thread>

#include "diagnostics/error_trap.h"
#include "diagnostics/thread_state.h"
#include "latchkey/cls_main.h"
#include "tests/support/fault_of.h"
#include "tests/support/module_scope.h"
#include "tests/support/record_spy.h"

namespace latchkey::test {
namespace {

constexpr CheckSite kHere{760, 160, u"Error here", u"tested operation"};
constexpr CheckSite kThere{761, 159, u"Error there", u"tested operation"};

template <class Body>
void OnAnotherThread(Body body) {
  std::thread(body).join();
}

TEST(RecordPerThreadTest, AFailureIsNotSeenOnAnotherThread) {
  const ModuleScope scope;
  const clsMain main;
  RecordApplicationFailure(kHere);
  OnAnotherThread([] {
    const clsMain other;
    EXPECT_FALSE(other.ErrorExists());
    EXPECT_EQ(other.ErrorLocationID(), 0);
    EXPECT_EQ(other.AppErrorDescription(), u"");
  });
}

TEST(RecordPerThreadTest, AFailureOnAnotherThreadDoesNotChangeThisRecord) {
  const ModuleScope scope;
  const clsMain main;
  RecordApplicationFailure(kHere);
  OnAnotherThread([] {
    const clsMain other;
    RecordApplicationFailure(kThere);
    EXPECT_EQ(other.ErrorLocationID(), 761);
  });
  EXPECT_EQ(ValuesOf(ErrorRecord()), (RecordValues{760, 2, 160, "Error here", 0, "", true, 0}));
}

TEST(RecordPerThreadTest, AThreadWithoutClsMainHasNoRecord) {
  const ModuleScope scope;
  const clsMain main;
  OnAnotherThread([&main] {
    EXPECT_EQ(FaultOf([] { ErrorRecord(); }), 91);
    EXPECT_EQ(FaultOf([&main] { return main.ErrorExists(); }), 91);
  });
}

TEST(RecordPerThreadTest, DestroyingClsMainOnAnotherThreadKeepsThisRecord) {
  const ModuleScope scope;
  const clsMain main;
  OnAnotherThread([] { const clsMain other; });
  EXPECT_FALSE(main.ErrorExists());
}

TEST(RecordPerThreadTest, StepAndWorkingValuesArePerThread) {
  const ModuleScope scope;
  ThreadState& here = ThisThread();
  here.currentStep = 12;
  OnAnotherThread([&here] {
    const ThreadState& there = ThisThread();
    EXPECT_NE(&there, &here);
    EXPECT_EQ(there.currentStep, 0);
    EXPECT_EQ(there.part, nullptr);
  });
}

}  // namespace
}  // namespace latchkey::test
