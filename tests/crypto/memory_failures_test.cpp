// Memory that runs out at any point of an operation.
#include <gtest/gtest.h>

#include <new>
#include <string>

#include "latchkey/cls_crypto_api.h"
#include "latchkey/cls_main.h"
#include "tests/support/bytes.h"
#include "tests/support/cipher_direction.h"
#include "tests/support/failing_memory.h"
#include "tests/support/module_scope.h"
#include "tests/support/record_spy.h"

namespace latchkey::test {
namespace {

constexpr int kMostAllocations = 1000;
constexpr std::size_t kInputLength = 5000;

class MemoryFailureTest : public testing::Test {
 protected:
  MemoryFailureTest() {
    api.InputData(ArrayOf(SampleBytes(kInputLength)));
    ByteArray password = ArrayOf("a password that no small text holds inside itself");
    api.Password(password);
  }

  // Calls the operation again and again; each time a later allocation fails, until none does.
  // `checkFailure` looks at what a failed call left. Gives the number of calls that failed.
  template <class Operation, class CheckFailure>
  int FailEveryAllocation(Operation&& operation, CheckFailure&& checkFailure) {
    for (int nth = 1; nth < kMostAllocations; ++nth) {
      FailAllocation(nth);
      const bool done = operation();
      const bool allSucceeded = AllocationFailurePending();
      FailAllocation(0);
      EXPECT_EQ(done, allSucceeded) << "allocation " << nth;
      if (allSucceeded) return nth - 1;

      EXPECT_TRUE(main.ErrorExists());
      EXPECT_EQ(main.ErrorType(), 1) << "allocation " << nth;
      EXPECT_EQ(main.RTErrorNumber(), 7);
      EXPECT_EQ(main.RTErrorDescription(), u"Out of memory");
      checkFailure(nth);
    }
    ADD_FAILURE() << "there is no end of allocations";
    return kMostAllocations;
  }

  ModuleScope scope;
  clsMain main;
  clsCryptoAPI api;
};

TEST_F(MemoryFailureTest, AnOldPasswordIsGoneWhenItsSuccessorFindsNoRoom) {
  ByteArray successor = ArrayOf(std::string(1000, 'x'));
  FailAllocation(1);
  EXPECT_THROW(api.Password(successor), std::bad_alloc);
  EXPECT_EQ(api.Password(), ByteArray{0});
  // The object works on, with the built-in password.
  EXPECT_TRUE(api.Encrypt(1, 1));
}

TEST_F(MemoryFailureTest, CreateHashRecordsItAndGivesEmptyText) {
  // The provider is open, so that only this operation's own memory is at stake.
  const Text text(500, u'a');
  const Text digest = api.CreateHash(text, 1, true, true);
  Text result;
  const int failures = FailEveryAllocation(
      [&] {
        result = api.CreateHash(text, 1, true, true);
        return !result.empty();
      },
      [&](int nth) {
        EXPECT_TRUE(main.ErrorLocationID() == 432 || main.ErrorLocationID() == 441) << nth;
      });
  EXPECT_GE(failures, 1);
  EXPECT_EQ(result, digest);
}

class CipherMemoryFailureTest : public MemoryFailureTest,
                                public testing::WithParamInterface<DirectionRow> {};

TEST_P(CipherMemoryFailureTest, TheBodyRecordsItAndDiscardsTheEarlierOutput) {
  const auto run = [this] { return (api.*GetParam().operation)(1, 1); };
  ASSERT_TRUE(run());
  const ByteArray wanted = api.OutputData();
  // The memory of a short earlier output cannot hold the next. A failure lets the long one's go.
  ASSERT_FALSE((api.*GetParam().operation)(0, 1));
  api.InputData(ArrayOf("short"));
  ASSERT_TRUE(run());
  api.InputData(ArrayOf(SampleBytes(kInputLength)));
  const int failures = FailEveryAllocation(run, [&](int nth) {
    EXPECT_EQ(main.ErrorLocationID(), GetParam().bodyTrap) << "allocation " << nth;
    EXPECT_EQ(ElementsOf(api.OutputData()), GetParam().outputAfterFailure) << "allocation " << nth;
    EXPECT_TRUE(run());
  });
  EXPECT_GE(failures, 1);
  EXPECT_EQ(api.OutputData(), wanted);
}

INSTANTIATE_TEST_SUITE_P(InEachDirection, CipherMemoryFailureTest,
                         testing::Values(kEncryptRow, kDecryptRow),
                         [](const auto& row) { return row.param.name; });

}  // namespace
}  // namespace latchkey::test
