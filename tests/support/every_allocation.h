// The fixture of tests that let the allocations of an object's operations and properties fail.
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <set>

#include "latchkey/cls_crypto_api.h"
#include "latchkey/cls_main.h"
#include "tests/support/allocation_sweep.h"
#include "tests/support/bytes.h"
#include "tests/support/record_spy.h"

namespace latchkey::test {

inline ByteArray OwnPassword() {
  return ArrayOf("a password that no small text holds inside itself");
}

class EveryAllocationTest : public AllocationSweep {
 protected:
  // Gives the result as text, empty when the operation failed.
  using Call = std::function<Text(clsCryptoAPI&)>;

  // Runs the operation on new objects. `check` looks at what a failed run left in the record.
  template <class Check>
  int SweepCall(const Call& run, Check&& check) {
    Text wanted;
    return Sweep([&](int nth) {
      clsCryptoAPI object;
      Prepare(object, ArrayOf("data"));
      Text result;
      const bool failed = RunFailing(nth, [&] { result = run(object); });
      if (nth == 0) wanted = result;
      EXPECT_EQ(result, failed ? Text() : wanted);
      if (failed) check(ValuesOf(ErrorRecord()));
      ExpectSuccess(run, object);
      return failed;
    });
  }

  // Runs an operation on a machine whose answers allocate. What cannot be read for a seed is left
  // out or replaced, for a drive with a warning, and a seed without digits is no number: each run
  // goes on, or ends with one of two faults, and each of these is seen.
  int SweepSeed(const Call& run, const std::set<std::int16_t>& traps) {
    AnswerWithMemory();
    std::map<std::int32_t, int> endings{{0, 0}, {7, 0}, {13, 0}};
    const int failures = Sweep([&](int nth) {
      clsCryptoAPI object;
      Prepare(object, ArrayOf("data"));
      Text result;
      const bool failed = RunFailing(nth, [&] { result = run(object); });
      const RecordValues record = ValuesOf(ErrorRecord());
      EXPECT_EQ(record.exists, result.empty());
      EXPECT_TRUE(failed || !result.empty());
      if (failed) ++endings.at(result.empty() ? record.rtNumber : 0);
      if (record.exists) ExpectRecorded(record, traps);
      EXPECT_FALSE(HasWarned() && result.empty());
      ExpectSuccess(run, object);
      return failed;
    });
    for (const auto& [ending, count] : endings) EXPECT_GT(count, 0) << ending;
    EXPECT_GT(Warnings(), 0);
    return failures;
  }

  // A new object with a password, an input, and a closed provider.
  static void Prepare(clsCryptoAPI& object, const ByteArray& input) {
    object.EnhancedProvider(true);
    ByteArray password = OwnPassword();
    object.Password(password);
    object.InputData(input);
  }

  // What an operation that never had a provider records: its own check over the fault.
  static void ExpectOutOfMemory(const RecordValues& record, std::int16_t trap,
                                std::int16_t providerCheck) {
    EXPECT_TRUE(record.exists);
    EXPECT_EQ(record.rtNumber, 7);
    EXPECT_EQ(record.rtText, "Out of memory");
    EXPECT_EQ(record.location, record.type == 1 ? trap : providerCheck);
  }

  clsMain main;

 private:
  static void ExpectRecorded(const RecordValues& record, const std::set<std::int16_t>& traps) {
    if (record.type == 2) {
      EXPECT_EQ(record.location, 710);
    } else {
      EXPECT_TRUE(traps.contains(record.location)) << record.location;
    }
  }

  static void ExpectSuccess(const Call& run, clsCryptoAPI& object) {
    ErrorRecord().Clear();
    EXPECT_NE(run(object), u"") << "the call after the failure";
    EXPECT_FALSE(ErrorRecord().ErrorExists());
  }
};

}  // namespace latchkey::test
