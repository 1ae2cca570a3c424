// Two threads that work at the same time, each with separate objects and a separate record.
#include <gtest/gtest.h>

#include <atomic>
#include <thread>

#include "diagnostics/thread_state.h"
#include "latchkey/cls_crypto_api.h"
#include "latchkey/cls_main.h"
#include "tests/support/bytes.h"

namespace latchkey::test {
namespace {

constexpr int kRounds = 200;

// Blocks each thread until both have reached it.
class Barrier {
 public:
  void Wait() {
    const int round = round_;
    if (++waiting_ == 2) {
      waiting_ = 0;
      ++round_;
    } else {
      while (round_ == round) std::this_thread::yield();
    }
  }

 private:
  std::atomic<int> waiting_{0};
  std::atomic<int> round_{0};
};

// Whether the output decrypts to the data. True also if the output ends in a space, which InputData
// removes.
bool GivesBack(clsCryptoAPI& api, const Bytes& data) {
  if (api.OutputData().TextElements().back() == ' ') return true;
  api.InputData(api.OutputData());
  return api.Decrypt(4, 2) && DataOf(api.OutputData()) == data;
}

// Encrypts and decrypts with its own password. Returns the number of correct rounds.
int SucceedingRounds(Barrier& barrier) {
  const clsMain main;
  clsCryptoAPI api;
  int right = 0;
  for (int i = 0; i < kRounds; ++i) {
    barrier.Wait();
    const Bytes data = SampleBytes(static_cast<std::size_t>(16 + i));
    ByteArray password = ArrayOf("password " + std::to_string(i));
    api.Password(password);
    api.InputData(ArrayOf(data));
    right += api.Encrypt(4, 2) && GivesBack(api, data) && !main.ErrorExists() ? 1 : 0;
    barrier.Wait();
  }
  return right;
}

// Fails in every round, at its own step. Returns the number of rounds with a correct record.
int FailingRounds(Barrier& barrier) {
  const clsMain main;
  clsCryptoAPI api;
  int right = 0;
  for (int i = 0; i < kRounds; ++i) {
    barrier.Wait();
    ThisThread().currentStep = i;
    const bool encrypted = api.Encrypt(1, 4);
    barrier.Wait();
    right += !encrypted && main.ErrorExists() && main.ErrorLocationID() == 719 &&
                     main.ErrorMachineState() == i
                 ? 1
                 : 0;
  }
  return right;
}

TEST(ServiceThreadsTest, ThreadsDoNotSeeEachOthersFailuresOrData) {
  Barrier barrier;
  int failing = 0;
  std::thread other([&] { failing = FailingRounds(barrier); });
  int succeeding = 0;
  std::thread one([&] { succeeding = SucceedingRounds(barrier); });
  one.join();
  other.join();
  EXPECT_EQ(succeeding, kRounds);
  EXPECT_EQ(failing, kRounds);
}

}  // namespace
}  // namespace latchkey::test
