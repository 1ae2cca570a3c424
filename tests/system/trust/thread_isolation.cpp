// Many threads run at the same time, each with its own entry object and service objects, and one
// thread without an entry object. Each thread plays its cases as if it were alone: any influence of
// another's data or record changes its transcript.
//   thread_isolation         64 threads of 20 cases; of 1,000 with LATCHKEY_LONG
//   thread_isolation COUNT   of that many
#include <algorithm>
#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <latch>
#include <numeric>
#include <thread>
#include <vector>

#include "latchkey/fault.h"
#include "tests/system/trust/case_player.h"
#include "tests/system/trust/program_start.h"

namespace latchkey::test {
namespace {

constexpr std::size_t kThreads = 64;
constexpr std::uint64_t kSeed = 5;

// The results of one thread's cases.
std::uint64_t PlayCases(std::size_t thread, std::uint64_t cases) {
  Transcript transcript;
  const auto component = MakeComponent();
  CasePlayer player(*component, RandomSource(kSeed, thread), transcript);
  for (std::uint64_t i = 0; i < cases; ++i) player.Play();
  return transcript.Digest();
}

// Calls on a thread without an entry object until the others are done. Returns the number of calls
// that did not report it.
int CallsThatMissedTheFault(const std::atomic<bool>& done) {
  const auto component = MakeComponent();
  component->CreateService();
  int missed = 0;
  do {
    try {
      component->Encrypt(1, 1);
      ++missed;
    } catch (const Fault& fault) {
      missed += fault.Number() == static_cast<int>(FaultNumber::ObjectNotSet) ? 0 : 1;
    }
  } while (!done);
  return missed;
}

// The transcripts of all threads, played at the same time.
std::vector<std::uint64_t> PlayTogether(std::uint64_t cases) {
  std::vector<std::uint64_t> digests(kThreads);
  std::latch start(kThreads);
  std::vector<std::thread> threads;
  for (std::size_t i = 0; i < kThreads; ++i) {
    threads.emplace_back([&, i] {
      start.arrive_and_wait();
      digests[i] = PlayCases(i, cases);
    });
  }
  for (auto& thread : threads) thread.join();
  return digests;
}

// The same, one after the other.
std::vector<std::uint64_t> PlayAlone(std::uint64_t cases) {
  std::vector<std::uint64_t> digests(kThreads);
  for (std::size_t i = 0; i < kThreads; ++i) {
    std::thread([&, i] { digests[i] = PlayCases(i, cases); }).join();
  }
  return digests;
}

int Run(std::uint64_t cases) {
  const auto alone = PlayAlone(cases);
  std::atomic<bool> done{false};
  int missed = 0;
  std::thread outsider([&] { missed = CallsThatMissedTheFault(done); });
  const auto together = PlayTogether(cases);
  done = true;
  outsider.join();

  const auto differing = std::inner_product(alone.begin(), alone.end(), together.begin(), 0,
                                            std::plus<>(), std::not_equal_to<>());
  std::printf("%zu threads of %lu cases, %d of them disturbed; %d calls without a record missed\n",
              kThreads, static_cast<unsigned long>(cases), differing, missed);
  return differing == 0 && missed == 0 ? EXIT_SUCCESS : EXIT_FAILURE;
}

}  // namespace
}  // namespace latchkey::test

int main(int count, char** arguments) {
  latchkey::test::SayThatItBegins("thread_isolation");
  const char* const usual = std::getenv("LATCHKEY_LONG") != nullptr ? "1000" : "20";
  return latchkey::test::Run(std::strtoull(count > 1 ? arguments[1] : usual, nullptr, 10));
}
