// Members that raise their faults to the caller, with the first, second, ... of their allocations
// failing until they succeed: the fault reaches the caller, and the object is unchanged.
#include <gtest/gtest.h>

#include <functional>
#include <new>
#include <vector>

#include "tests/support/every_allocation.h"

namespace latchkey::test {
namespace {

const Text kLongText(200, u'a');

// Runs a step with the nth allocation failing, or none for 0. Returns whether that allocation was
// made. The step must raise std::bad_alloc in that case, and nothing otherwise.
bool RaisesFailing(int nth, const std::function<void()>& step) {
  bool raised = false;
  const bool failed = RunFailing(nth, [&] {
    try {
      step();
    } catch (const std::bad_alloc&) {
      raised = true;
    }
  });
  EXPECT_EQ(raised, failed);
  return failed;
}

TEST_F(EveryAllocationTest, FailuresInPropertiesAndByteArrayConversionsAreRaised) {
  clsCryptoAPI object;
  Prepare(object, ArrayOf(SampleBytes(500)));
  ByteArray longPassword = ArrayOf(SampleBytes(400));
  object.Password(longPassword);
  const ByteArray password = object.Password();
  const ByteArray array = ArrayOf(SampleBytes(300));
  ASSERT_TRUE(object.Encrypt(1, 1));
  const ByteArray output = object.OutputData();
  const std::vector<std::function<void()>> steps{
      [&] { static_cast<void>(object.OutputData()); },
      [&] { static_cast<void>(object.Password()); },
      [&] { static_cast<void>(object.ByteArrayToString(array)); },
      [&] { static_cast<void>(object.StringToByteArray(TextView(kLongText))); },
      [&] { static_cast<void>(object.StringToByteArray(1234567890.125)); },
  };
  for (std::size_t step = 0; step < steps.size(); ++step) {
    SCOPED_TRACE("step " + std::to_string(step));
    const int failures = Sweep([&](int nth) {
      const bool failed = RaisesFailing(nth, steps[step]);
      EXPECT_EQ(object.Password(), password);
      EXPECT_EQ(object.OutputData(), output);
      EXPECT_FALSE(main.ErrorExists());
      return failed;
    });
    EXPECT_GT(failures, 0);
  }
}

TEST_F(EveryAllocationTest, FailuresWhileSettingTheInputKeepTheEarlierInput) {
  const ByteArray earlier = ArrayOf(SampleBytes(500));
  const ByteArray later = ArrayOf(SampleBytes(700));
  const auto outputOf = [](const ByteArray& input) {
    clsCryptoAPI object;
    Prepare(object, input);
    EXPECT_TRUE(object.Encrypt(1, 1));
    return object.OutputData();
  };
  const int failures = Sweep([&](int nth) {
    clsCryptoAPI object;
    Prepare(object, earlier);
    const bool failed = RaisesFailing(nth, [&] { object.InputData(later); });
    EXPECT_TRUE(object.Encrypt(1, 1));
    EXPECT_EQ(object.OutputData(), outputOf(failed ? earlier : later));
    return failed;
  });
  EXPECT_GT(failures, 0);
}

TEST_F(EveryAllocationTest, FailuresWhileSettingAPasswordKeepTheCallersArray) {
  const ByteArray wanted = ArrayOf(SampleBytes(300));
  const int failures = Sweep([&](int nth) {
    clsCryptoAPI object;
    Prepare(object, ArrayOf("data"));
    ByteArray password = wanted;
    const bool failed = RaisesFailing(nth, [&] { object.Password(password); });
    EXPECT_EQ(password, failed ? wanted : ByteArray());
    EXPECT_EQ(object.Password(), failed ? ByteArray{0} : wanted);
    EXPECT_TRUE(object.Encrypt(1, 1));
    return failed;
  });
  EXPECT_EQ(failures, 1) << "the copy";
}

// The old password is discarded first, before the new one is copied.
TEST_F(EveryAllocationTest, FailuresWhileReplacingAPasswordDiscardTheOldOne) {
  clsCryptoAPI object;
  Prepare(object, ArrayOf("data"));
  ByteArray successor = ArrayOf(std::string(1000, 'x'));
  EXPECT_TRUE(RaisesFailing(1, [&] { object.Password(successor); }));
  EXPECT_EQ(object.Password(), ByteArray{0});
  EXPECT_TRUE(object.Encrypt(1, 1)) << "with the built-in password";
}

TEST_F(EveryAllocationTest, FailuresWhileMakingARecordAreRaised) {
  const int failures = Sweep([&](int nth) {
    const clsMain first;
    return RaisesFailing(nth, [] { const clsMain second; });
  });
  EXPECT_GT(failures, 0);
}

}  // namespace
}  // namespace latchkey::test
