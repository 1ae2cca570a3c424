// Many threads use the C interface and share its tables of handles: each opens, uses and closes its
// own handles, uses timers that another thread opened, is refused handles that belong to other
// threads, and closes those that any thread may close.
//   shared_handles         16 threads of 200 rounds; of 10,000 with LATCHKEY_LONG
//   shared_handles COUNT   of that many
#include <array>
#include <atomic>
#include <barrier>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <span>
#include <thread>
#include <vector>

#include "latchkey.h"
#include "tests/system/trust/program_start.h"

namespace latchkey::test {
namespace {

constexpr std::size_t kThreads = 16;

struct Handles {
  latchkey_thread* thread = nullptr;
  latchkey_crypto* crypto = nullptr;
  latchkey_timer* timer = nullptr;
};

// The handles of all threads, each set by its own and read by all between two barriers.
class SharedHandles {
 public:
  // The number of calls with an unexpected status.
  int Play(std::uint64_t rounds) {
    std::vector<std::thread> threads;
    for (std::size_t i = 0; i < kThreads; ++i) {
      threads.emplace_back([this, i, rounds] {
        for (std::uint64_t round = 0; round < rounds; ++round) PlayRound(i, round);
      });
    }
    for (auto& thread : threads) thread.join();
    return wrong_;
  }

 private:
  void Expect(int status, int expected) { wrong_ += status == expected ? 0 : 1; }

  void PlayRound(std::size_t self, std::uint64_t round) {
    const std::size_t other = (self + 1 + round % (kThreads - 1)) % kThreads;
    Handles& own = handles_[self];
    Expect(latchkey_thread_open(&own.thread), LATCHKEY_OK);
    Expect(latchkey_crypto_open(&own.crypto), LATCHKEY_OK);
    Expect(latchkey_timer_open(&own.timer), LATCHKEY_OK);
    together_.arrive_and_wait();
    UseOwn(own, static_cast<std::uint8_t>(self));
    UseOthers(handles_[other]);
    together_.arrive_and_wait();
    // Each cryptographic handle and each timer is closed by a thread that did not open it.
    Expect(latchkey_crypto_close(handles_[other].crypto), LATCHKEY_OK);
    Expect(latchkey_timer_close(handles_[other].timer), LATCHKEY_OK);
    Expect(latchkey_thread_close(own.thread), LATCHKEY_OK);
    together_.arrive_and_wait();
    Expect(latchkey_hash(own.crypto, LATCHKEY_MD5, nullptr, 0, nullptr, &none_[self]),
           LATCHKEY_BAD_HANDLE);
  }

  void UseOwn(const Handles& own, std::uint8_t self) {
    const latchkey_key key = {LATCHKEY_DEFAULT_PASSWORD, LATCHKEY_MD5, LATCHKEY_RC2, 0, nullptr, 0};
    const std::array<std::uint8_t, 3> plain{self, 1, 2};
    std::array<std::uint8_t, 8> encrypted{};
    std::array<std::uint8_t, 8> decrypted{};
    std::size_t encryptedLength = encrypted.size();
    std::size_t decryptedLength = decrypted.size();
    Expect(latchkey_encrypt(own.crypto, &key, plain.data(), plain.size(), encrypted.data(),
                            &encryptedLength),
           LATCHKEY_OK);
    Expect(latchkey_decrypt(own.crypto, &key, encrypted.data(), encryptedLength, decrypted.data(),
                            &decryptedLength),
           LATCHKEY_OK);
    const bool same = decryptedLength == plain.size() &&
                      std::memcmp(decrypted.data(), plain.data(), plain.size()) == 0;
    wrong_ += same ? 0 : 1;
  }

  // A timer is used by one thread at a time, here by one that did not open it.
  void UseOthers(const Handles& others) {
    latchkey_error error{};
    std::int32_t elapsed = 0;
    std::size_t length = 0;
    Expect(latchkey_error_read(others.thread, &error), LATCHKEY_WRONG_THREAD);
    Expect(latchkey_thread_close(others.thread), LATCHKEY_WRONG_THREAD);
    Expect(latchkey_hash(others.crypto, LATCHKEY_MD5, nullptr, 0, nullptr, &length),
           LATCHKEY_WRONG_THREAD);
    Expect(latchkey_timer_start(others.timer), LATCHKEY_OK);
    Expect(latchkey_timer_elapsed(others.timer, &elapsed), LATCHKEY_OK);
  }

  std::array<Handles, kThreads> handles_;
  std::array<std::size_t, kThreads> none_{};
  std::barrier<> together_{kThreads};
  std::atomic<int> wrong_{0};
};

int Run(std::uint64_t rounds) {
  const int wrong = SharedHandles().Play(rounds);
  std::printf("%zu threads of %lu rounds, %d calls ended otherwise\n", kThreads,
              static_cast<unsigned long>(rounds), wrong);
  return wrong == 0 ? EXIT_SUCCESS : EXIT_FAILURE;
}

}  // namespace
}  // namespace latchkey::test

int main(int count, char** arguments) {
  latchkey::test::SayThatItBegins("shared_handles");
  const char* const usual = std::getenv("LATCHKEY_LONG") != nullptr ? "10000" : "200";
  return latchkey::test::Run(std::strtoull(count > 1 ? arguments[1] : usual, nullptr, 10));
}
