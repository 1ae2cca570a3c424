// The fixture of tests that make the allocations of an object's operations and properties fail.
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <set>
#include <utility>

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
  // Returns the result as text, empty if the operation failed.
  using Call = std::function<Text(clsCryptoAPI&)>;

  // Runs the operation on new objects. `check` checks the record after a failed run.
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

  // Runs an operation that makes a seed. `traps` are the locations at which it records a fault.
  int SweepSeedOf(const Call& run, const std::set<std::int16_t>& traps) {
    return SweepSeed({7, 13}, [&](int nth) {
      clsCryptoAPI object;
      Prepare(object, ArrayOf("data"));
      Text result;
      const bool failed = RunFailing(nth, [&] { result = run(object); });
      const RecordValues record = ValuesOf(ErrorRecord());
      EXPECT_EQ(record.exists, result.empty());
      EXPECT_TRUE(failed || !result.empty());
      if (record.exists) ExpectRecorded(record, traps);
      ExpectSuccess(run, object);
      return std::pair(failed, result.empty() ? record.rtNumber : 0);
    });
  }

  // A new object with a password, an input, and a closed provider.
  static void Prepare(clsCryptoAPI& object, const ByteArray& input) {
    object.EnhancedProvider(true);
    ByteArray password = OwnPassword();
    object.Password(password);
    object.InputData(input);
  }

  // An operation that could not open a provider records its own failure over the fault.
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
