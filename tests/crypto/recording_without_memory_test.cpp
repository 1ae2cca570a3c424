// A failed allocation can be recorded, because recording allocates nothing.
#include <gtest/gtest.h>

#include "diagnostics/error_trap.h"
#include "diagnostics/thread_state.h"
#include "latchkey/cls_crypto_api.h"
#include "latchkey/cls_main.h"
#include "tests/support/failing_memory.h"
#include "tests/support/module_scope.h"

namespace latchkey::test {
namespace {

class RecordingWithoutMemoryTest : public testing::Test {
 protected:
  ~RecordingWithoutMemoryTest() override { FailAllocation(0); }

  ModuleScope scope;
  clsMain main;
};

TEST_F(RecordingWithoutMemoryTest, EveryCheckOfTheTableIsRecordedWithoutAllocating) {
  for (const CheckSite& site : kCheckSites) {
    FailAllocation(1);
    RecordApplicationFailure(site);
    EXPECT_TRUE(AllocationFailurePending()) << site.location;
  }
}

TEST_F(RecordingWithoutMemoryTest, EveryFaultIsRecordedWithoutAllocating) {
  for (const std::int32_t number : {5, 6, 7, 9, 11, 13, 91, 94}) {
    FailAllocation(1);
    RecordRunTimeFailure(kTrapSites.front(), Fault(static_cast<FaultNumber>(number)));
    EXPECT_TRUE(AllocationFailurePending()) << number;
  }
}

TEST_F(RecordingWithoutMemoryTest, ClearingAllocatesNothing) {
  RecordApplicationFailure(kCheckSites.front());
  FailAllocation(1);
  ErrorRecord().Clear();
  EXPECT_TRUE(AllocationFailurePending());
}

}  // namespace
}  // namespace latchkey::test
