// Two threads at work at the same time, each with objects and a record of its own.
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

// Lets both threads go on only when both have come this far.
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

// Whether the output decrypts to the data. Where it ends in a space it does not arrive whole, and
// nothing can be said.
bool GivesBack(clsCryptoAPI& api, const Bytes& data) {
  if (api.OutputData().TextElements().back() == ' ') return true;
  api.InputData(api.OutputData());
  return api.Decrypt(4, 2) && DataOf(api.OutputData()) == data;
}

// Encrypts and decrypts under its own password; the rounds that came out right.
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

// Fails in every round, at a step of its own; the rounds in which the record says so.
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

TEST(ServiceThreadsTest, NeitherSeesTheFailuresOrTheDataOfTheOther) {
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
