// Each function of the C interface, with the first, second, ... of its allocations failing until it
// succeeds: its status, its outputs, the record, that nothing leaks, and the function afterwards.
#include <gtest/gtest.h>

#include <functional>
#include <set>
#include <utility>

#include "diagnostics/thread_state.h"
#include "tests/support/allocation_sweep.h"
#include "tests/support/c_client.h"
#include "tests/support/record_spy.h"

namespace latchkey::test {
namespace {

constexpr std::int16_t kRandomTrap = 433;

// A thread with a record of an earlier failure, and a client on it. No text of the record is small
// enough to be held without memory.
struct Session {
  Session() {
    EXPECT_EQ(latchkey_thread_open(&thread), LATCHKEY_OK);
    EXPECT_EQ(latchkey_timer_open(&timer), LATCHKEY_OK);
    SetValues(ErrorRecord(), {410, 2, 150, "an earlier message", 13, "an earlier fault", true, 7});
  }
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;
  ~Session() {
    EXPECT_EQ(latchkey_timer_close(timer), LATCHKEY_OK);
    EXPECT_EQ(latchkey_thread_close(thread), LATCHKEY_OK);
  }

  latchkey_thread* thread = nullptr;
  latchkey_timer* timer = nullptr;
  CClient client;
};

using Call = std::function<int(Session&)>;

class EveryCAllocationTest : public AllocationSweep {
 protected:
  // Runs the function in new sessions. `traps` are where it records the fault; none for a function
  // that records nothing. Gives how many runs failed.
  int SweepCall(const Call& call, const std::set<std::int16_t>& traps) {
    return Sweep([&](int nth) {
      Session session;
      const RecordValues before = ValuesOf(ErrorRecord());
      int status = LATCHKEY_OK;
      const bool failed = RunFailing(nth, [&] { status = call(session); });
      EXPECT_EQ(status != LATCHKEY_OK, failed);
      if (failed) {
        ExpectOutOfMemory(status, before, traps);
        EXPECT_EQ(call(session), LATCHKEY_OK) << "the call after the failure";
      }
      return failed;
    });
  }

  // Runs a function that makes a seed.
  int SweepSeedOf(const Call& call) {
    return SweepSeed({LATCHKEY_NO_MEMORY, LATCHKEY_FAULT}, [&](int nth) {
      Session session;
      int status = LATCHKEY_OK;
      const bool failed = RunFailing(nth, [&] { status = call(session); });
      const RecordValues record = ValuesOf(ErrorRecord());
      EXPECT_TRUE(failed || status == LATCHKEY_OK);
      EXPECT_EQ(record.exists, status != LATCHKEY_OK);
      EXPECT_EQ(status == LATCHKEY_FAULT, record.exists && record.rtText == "Type mismatch");
      EXPECT_EQ(call(session), LATCHKEY_OK) << "the call after the failure";
      return std::pair(failed, status == LATCHKEY_NO_PROVIDER ? LATCHKEY_NO_MEMORY : status);
    });
  }

 private:
  // The component's own opening of a provider is a check, recorded over the fault.
  static void ExpectOutOfMemory(int status, const RecordValues& before,
                                const std::set<std::int16_t>& traps) {
    const RecordValues record = ValuesOf(ErrorRecord());
    const bool check = status == LATCHKEY_NO_PROVIDER && traps.contains(kRandomTrap);
    EXPECT_EQ(status, check ? LATCHKEY_NO_PROVIDER : LATCHKEY_NO_MEMORY);
    if (traps.empty()) {
      EXPECT_EQ(record, before);
      return;
    }
    EXPECT_TRUE(record.exists);
    EXPECT_EQ(record.type, check ? 2 : 1);
    EXPECT_TRUE(check ? record.location == 710 : traps.contains(record.location))
        << record.location;
    EXPECT_EQ(record.rtNumber, 7);
    EXPECT_EQ(record.rtText, "Out of memory");
  }
};

latchkey_key KeyOf(std::int32_t cipher, std::uint32_t flags) {
  latchkey_key key{flags | LATCHKEY_ENHANCED, LATCHKEY_MD5, cipher, 0, nullptr, 0};
  if (cipher == LATCHKEY_RC2) key.rc2_effective_bits = 40;
  return key;
}

TEST_F(EveryCAllocationTest, OfEncryptAndDecryptIsRefused) {
  const Bytes plaintext = SampleBytes(500);
  for (std::int32_t cipher = LATCHKEY_RC4; cipher <= LATCHKEY_3DES_112; ++cipher) {
    for (const std::uint32_t flags : {0U, std::uint32_t{LATCHKEY_DEFAULT_PASSWORD}}) {
      const latchkey_key key = KeyOf(cipher, flags);
      CClient source;
      const Session record;
      ASSERT_EQ(source.Encrypt(key, plaintext), LATCHKEY_OK);
      const Bytes ciphertext = source.Result();
      ASSERT_EQ(source.Close(), LATCHKEY_OK);
      EXPECT_GE(SweepCall([&](Session& session) { return session.client.Encrypt(key, plaintext); },
                          {438}),
                1);
      EXPECT_GE(SweepCall([&](Session& session) { return session.client.Decrypt(key, ciphertext); },
                          {436}),
                1);
    }
  }
}

TEST_F(EveryCAllocationTest, OfHashIsRefused) {
  const Bytes data = SampleBytes(500);
  for (std::int32_t hash = LATCHKEY_MD5; hash <= LATCHKEY_SHA1; ++hash) {
    EXPECT_GE(SweepCall([&](Session& session) { return session.client.Hash(hash, data); }, {432}),
              1);
  }
}

TEST_F(EveryCAllocationTest, OfRandomDataIsRefused) {
  // The bytes go to the caller's own buffer: only a provider may need memory for them.
  static_cast<void>(
      SweepCall([](Session& session) { return session.client.RandomBytes(); }, {kRandomTrap}));
  EXPECT_GE(
      SweepCall([](Session& session) { return session.client.CreateRandom(); }, {kRandomTrap, 441}),
      1);
  EXPECT_GE(
      SweepCall([](Session& session) { return session.client.CreateSalt(0); }, {kRandomTrap, 434}),
      1);
  EXPECT_GE(
      SweepCall([](Session& session) { return session.client.CreateSalt(LATCHKEY_LETTERS_ONLY); },
                {434}),
      1);
}

TEST_F(EveryCAllocationTest, OfTheSeedOfRandomDataIsRefusedOrDoneWithout) {
  EXPECT_GE(SweepSeedOf([](Session& session) { return session.client.CreateRandom(); }), 1);
  EXPECT_GE(SweepSeedOf([](Session& session) { return session.client.CreateSalt(0); }), 1);
  const Call letter = [](Session& session) {
    return session.client.CreateSalt(LATCHKEY_LETTERS_ONLY, 1);
  };
  EXPECT_GE(SweepSeedOf(letter), 1);
}

TEST_F(EveryCAllocationTest, OfTheHexadecimalConversionsIsRefused) {
  const Bytes data = SampleBytes(500);
  const std::string digits(1000, '4');
  EXPECT_GE(SweepCall([&](Session& session) { return session.client.EncodeHex(data); }, {441}), 1);
  EXPECT_GE(SweepCall([&](Session& session) { return session.client.DecodeHex(digits); }, {440}),
            1);
}

TEST_F(EveryCAllocationTest, OfTheDescriptionsIsRefused) {
  EXPECT_GE(
      SweepCall([](Session& session) { return session.client.DescribeFailure(session.thread); },
                {}),
      1);
  EXPECT_GE(
      SweepCall([](Session& session) { return session.client.DescribeFault(session.thread); }, {}),
      1);
}

TEST_F(EveryCAllocationTest, OfOpeningIsRefused) {
  EXPECT_GE(SweepCall([](Session&) { return CClient::OpenCrypto(); }, {}), 1);
  EXPECT_GE(SweepCall([](Session&) { return CClient::OpenTimer(); }, {}), 1);
}

TEST_F(EveryCAllocationTest, OfOpeningAThreadIsRefused) {
  EXPECT_EQ(CClient::OpenThread(), LATCHKEY_OK);  // makes what lives as long as the process
  const int failures = Sweep([](int nth) {
    const Session session;
    const RecordValues record = ValuesOf(ErrorRecord());
    int status = LATCHKEY_OK;
    const bool failed = RunFailing(nth, [&] { status = CClient::OpenThread(); });
    EXPECT_EQ(status, failed ? LATCHKEY_NO_MEMORY : LATCHKEY_OK);
    EXPECT_TRUE(!failed || ValuesOf(ErrorRecord()) == record) << "the record of the open thread";
    EXPECT_EQ(CClient::OpenThread(), LATCHKEY_OK) << "the call after the failure";
    return failed;
  });
  EXPECT_GE(failures, 1);
}

// A query that fails is no failure of the function.
TEST_F(EveryCAllocationTest, OfTheConnectionsQueryIsRecorded) {
  static_cast<void>(Sweep([](int nth) {
    const Session session;
    std::int32_t connected = 7;
    const auto query = [&] {
      EXPECT_EQ(latchkey_connection_exists(session.thread, &connected), LATCHKEY_OK);
    };
    const bool failed = RunFailing(nth, query);
    const RecordValues record = ValuesOf(ErrorRecord());
    EXPECT_EQ(record.location, failed ? 419 : 410);
    EXPECT_EQ(record.rtNumber, failed ? 7 : 13);
    EXPECT_TRUE(!failed || connected == 0);
    query();
    return failed;
  }));
}

// What has nothing to fail for.
TEST_F(EveryCAllocationTest, OfTheOthersThereIsNone) {
  const Call others = [](Session& session) {
    latchkey_error error{};
    latchkey_timer* timer = session.timer;
    std::int32_t milliseconds = 0;
    EXPECT_EQ(latchkey_error_read(session.thread, &error), LATCHKEY_OK);
    EXPECT_EQ(latchkey_timer_start(timer), LATCHKEY_OK);
    EXPECT_EQ(latchkey_timer_elapsed(timer, &milliseconds), LATCHKEY_OK);
    EXPECT_STREQ(latchkey_status_text(LATCHKEY_OK), "Done");
    EXPECT_STRNE(latchkey_version(), "");
    return session.client.Close();
  };
  EXPECT_EQ(SweepCall(others, {}), 0);
}

}  // namespace
}  // namespace latchkey::test
