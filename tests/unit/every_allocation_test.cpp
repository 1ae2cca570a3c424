// Each operation and each property, with the first, second, ... of its allocations failing until it
// succeeds: what it reports, that nothing leaks, and that the object works afterwards.
#include <gtest/gtest.h>

#include <cstdio>
#include <functional>

#include "com/cls_main.h"
#include "crypto/cls_crypto_api.h"
#include "tests/support/bytes.h"
#include "tests/support/failing_memory.h"
#include "tests/support/faulty_provider.h"
#include "tests/support/module_scope.h"
#include "tests/support/record_spy.h"
#include "tests/support/still_probe.h"

namespace latchkey::test {
namespace {

constexpr int kMostAllocations = 1000;
// Too long to lie in an object itself.
const Text kLongText(200, u'a');
const Text kLongDigits(400, u'4');

using Call = std::function<Text(clsCryptoAPI&)>;

class EveryAllocationTest : public testing::Test {
 protected:
  EveryAllocationTest() {
    scope.Services().probe = &probe;
    scope.Services().provider = &provider;
  }
  ~EveryAllocationTest() override { EXPECT_EQ(provider.OpenHandles(), 0); }

  // A new object with a password, a plaintext or its ciphertext, and a closed provider.
  static void Prepare(clsCryptoAPI& object, const ByteArray& input) {
    object.EnhancedProvider(true);
    ByteArray password = ArrayOf("a password that no small text holds inside itself");
    object.Password(password);
    object.InputData(input);
  }

  // Runs the operation on new objects. `check` looks at what a failed run left in the record.
  // Gives how many runs failed.
  template <class Check>
  int Sweep(const Call& run, const ByteArray& input, Check&& check) {
    const Text wanted = RunOnNewObject(run, input, 0);
    EXPECT_NE(wanted, u"");
    for (int nth = 1; nth < kMostAllocations; ++nth) {
      SCOPED_TRACE("allocation " + std::to_string(nth));
      const long before = LiveBlocks();
      const int handles = provider.OpenHandles();
      {
        const Text result = RunOnNewObject(run, input, nth);
        EXPECT_EQ(result, failed ? Text() : wanted);
      }
      EXPECT_EQ(provider.OpenHandles(), handles);
      EXPECT_EQ(provider.ClosedTwice(), 0);
      EXPECT_EQ(LiveBlocks(), before) << "blocks left behind";
      if (!failed) {
        std::printf("%d allocations failed in turn\n", nth - 1);
        return nth - 1;
      }
      check(ValuesOf(ErrorRecord()));
    }
    ADD_FAILURE() << "there is no end of allocations";
    return kMostAllocations;
  }

  // What an operation that never had a provider records: its own check over the fault.
  static void ExpectOutOfMemory(const RecordValues& record, std::int16_t trap,
                                std::int16_t providerCheck) {
    EXPECT_TRUE(record.exists);
    EXPECT_EQ(record.rtNumber, 7);
    EXPECT_EQ(record.rtText, "Out of memory");
    if (record.type == 1) {
      EXPECT_EQ(record.location, trap);
    } else {
      EXPECT_EQ(record.location, providerCheck);
    }
  }

  // The result of a run in which the nth allocation fails, or none with 0; `failed` tells whether
  // it came to that. A run that failed is followed by one that must succeed.
  Text RunOnNewObject(const Call& run, const ByteArray& input, int nth) {
    clsCryptoAPI object;
    Prepare(object, input);
    FailAllocation(nth);
    Text result = run(object);
    failed = nth > 0 && !AllocationFailurePending();
    FailAllocation(0);
    const RecordValues left = ValuesOf(ErrorRecord());
    if (failed) {
      EXPECT_NE(run(object), u"") << "the call after the failure";
      EXPECT_FALSE(ErrorRecord().ErrorExists());
      SetValues(ErrorRecord(), left);
    }
    return result;
  }

  ModuleScope scope;
  StillProbe probe;
  FaultyProvider provider;
  clsMain main;
  bool failed = false;
};

TEST_F(EveryAllocationTest, OfCreateHashIsRecorded) {
  const Call run = [](clsCryptoAPI& object) { return object.CreateHash(kLongText, 1, true, true); };
  // Converting to digits has a trap of its own.
  EXPECT_GE(Sweep(run, ArrayOf("data"),
                  [](const RecordValues& record) {
                    ExpectOutOfMemory(record, record.location == 441 ? 441 : 432, 709);
                  }),
            1);
}

TEST_F(EveryAllocationTest, OfEncryptIsRecorded) {
  for (std::int16_t cipher = 1; cipher <= 5; ++cipher) {
    const Call run = [cipher](clsCryptoAPI& object) {
      return object.Encrypt(1, cipher) ? Text(u"done") : Text();
    };
    EXPECT_GE(Sweep(run, ArrayOf(SampleBytes(500)),
                    [](const RecordValues& record) { ExpectOutOfMemory(record, 438, 720); }),
              1);
  }
}

TEST_F(EveryAllocationTest, OfDecryptIsRecorded) {
  for (std::int16_t cipher = 1; cipher <= 5; ++cipher) {
    clsCryptoAPI source;
    Prepare(source, ArrayOf(SampleBytes(500)));
    ASSERT_TRUE(source.Encrypt(1, cipher));
    const Call run = [cipher](clsCryptoAPI& object) {
      return object.Decrypt(1, cipher) ? Text(u"done") : Text();
    };
    EXPECT_GE(Sweep(run, source.OutputData(),
                    [](const RecordValues& record) { ExpectOutOfMemory(record, 436, 713); }),
              1);
  }
}

TEST_F(EveryAllocationTest, OfRandomDataIsRecorded) {
  // Random, so only its length can be checked; hexadecimal, so that no byte is cut off as a space.
  const Call random = [](clsCryptoAPI& object) {
    return object.CreateRandom(400, true, true).size() == 400 ? Text(u"done") : Text();
  };
  EXPECT_GE(Sweep(random, ArrayOf("data"),
                  [](const RecordValues& record) {
                    ExpectOutOfMemory(record, record.location == 441 ? 441 : 433, 710);
                  }),
            1);
  const Call letter = [](clsCryptoAPI& object) {
    return object.CreateSaltValue(1, true).size() == 1 ? Text(u"done") : Text();
  };
  EXPECT_GE(Sweep(letter, ArrayOf("data"),
                  [](const RecordValues& record) { ExpectOutOfMemory(record, 434, 0); }),
            1);
}

TEST_F(EveryAllocationTest, OfASaltOfCharactersIsRecordedAtTheInnerOrTheOuterTrap) {
  // Long enough that cutting spaces off its ends leaves some text, and that no text is small.
  const Call salt = [](clsCryptoAPI& object) {
    return object.CreateSaltValue(400).empty() ? Text() : Text(u"done");
  };
  EXPECT_GE(Sweep(salt, ArrayOf("data"),
                  [](const RecordValues& record) {
                    ExpectOutOfMemory(record, record.location == 434 ? 434 : 433, 710);
                  }),
            1);
}

TEST_F(EveryAllocationTest, OfTheHexadecimalConversionsIsRecorded) {
  const Call toHex = [](clsCryptoAPI& object) { return object.ConvertStringToHex(kLongText); };
  const Call fromHex = [](clsCryptoAPI& object) {
    return object.ConvertStringFromHex(kLongDigits);
  };
  // These do not clear the record, so what a later run finds there is the failure before it.
  const auto sweep = [this](const Call& run, std::int16_t trap) {
    const Call cleared = [run](clsCryptoAPI& object) {
      ErrorRecord().Clear();
      return run(object);
    };
    return Sweep(cleared, ArrayOf("data"),
                 [trap](const RecordValues& record) { ExpectOutOfMemory(record, trap, 0); });
  };
  EXPECT_GE(sweep(toHex, 441), 1);
  EXPECT_GE(sweep(fromHex, 440), 1);
}

// What raises its faults to the caller: the fault passes, and the object is as it was.
TEST_F(EveryAllocationTest, OfThePropertiesAndByteArrayConversionsIsRaised) {
  clsCryptoAPI object;
  Prepare(object, ArrayOf(SampleBytes(500)));
  ByteArray longPassword = ArrayOf(SampleBytes(400));
  object.Password(longPassword);
  const ByteArray password = object.Password();
  const ByteArray array = ArrayOf(SampleBytes(300));
  const std::vector<std::function<void()>> steps{
      [&] { object.InputData(array); },
      [&] { static_cast<void>(object.OutputData()); },
      [&] { static_cast<void>(object.Password()); },
      [&] { static_cast<void>(object.ByteArrayToString(array)); },
      [&] { static_cast<void>(object.StringToByteArray(TextView(kLongText))); },
      [&] { static_cast<void>(object.StringToByteArray(1234567890.125)); },
  };
  ASSERT_TRUE(object.Encrypt(1, 1));
  const ByteArray output = object.OutputData();
  for (std::size_t step = 0; step < steps.size(); ++step) {
    SCOPED_TRACE("step " + std::to_string(step));
    int nth = 1;
    for (bool raised = true; raised && nth < kMostAllocations; nth += raised ? 1 : 0) {
      const long before = LiveBlocks();
      raised = false;
      FailAllocation(nth);
      try {
        steps[step]();
      } catch (const std::bad_alloc&) {
        raised = true;
      }
      EXPECT_EQ(raised, !AllocationFailurePending());
      FailAllocation(0);
      EXPECT_EQ(LiveBlocks(), before);
      EXPECT_EQ(object.Password(), password);
      EXPECT_EQ(object.OutputData(), output);
      EXPECT_FALSE(main.ErrorExists());
      if (step == 0 && raised) {
        ASSERT_TRUE(object.Encrypt(1, 1));
        EXPECT_EQ(object.OutputData(), output) << "the earlier input is gone";
      }
    }
    EXPECT_GT(nth, 1) << "no allocation was made to fail";
  }
}

TEST_F(EveryAllocationTest, OfSettingAPasswordLeavesTheCallersArray) {
  clsCryptoAPI object;
  Prepare(object, ArrayOf("data"));
  int nth = 1;
  for (bool raised = true; raised && nth < kMostAllocations; nth += raised ? 1 : 0) {
    ByteArray password = ArrayOf(SampleBytes(300));
    const ByteArray wanted = password;
    raised = false;
    FailAllocation(nth);
    try {
      object.Password(password);
    } catch (const std::bad_alloc&) {
      raised = true;
    }
    FailAllocation(0);
    EXPECT_EQ(password.Dimensions(), raised ? 1 : 0);
    EXPECT_EQ(raised ? password : object.Password(), wanted);
    EXPECT_TRUE(object.Encrypt(1, 1));
  }
  EXPECT_EQ(nth, 2) << "the copy";
}

TEST_F(EveryAllocationTest, OfMakingARecordIsRaised) {
  int nth = 1;
  for (bool raised = true; raised && nth < kMostAllocations; nth += raised ? 1 : 0) {
    const long before = LiveBlocks();
    raised = false;
    FailAllocation(nth);
    try {
      const clsMain second;
    } catch (const std::bad_alloc&) {
      raised = true;
    }
    FailAllocation(0);
    if (raised) {
      EXPECT_EQ(LiveBlocks(), before);
    }
  }
  EXPECT_GT(nth, 1);
}

}  // namespace
}  // namespace latchkey::test
