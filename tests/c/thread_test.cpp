// Threads, cancellation and fork. CThreadTest runs under ThreadSanitizer too (system/trust/linux).
#include <gtest/gtest.h>
#include <pthread.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <functional>
#include <thread>

#include "tests/c/client.h"
#include "tests/c/functions.h"

namespace latchkey::test {
namespace {

constexpr int kThreads = 4;
constexpr int kRounds = 100;

// Runs on several threads at once and waits for them.
void OnThreads(const std::function<void(int thread)>& work) {
  std::vector<std::jthread> threads;
  for (int i = 0; i < kThreads; ++i) threads.emplace_back(work, i);
}

TEST(CThreadTest, EveryFunctionMayUseOneKeyAtTheSameTime) {
  for (const std::int32_t cipher : {LATCHKEY_RC4, LATCHKEY_3DES}) {
    const auto functions = AllCFunctions(cipher);
    OnThreads([&](int thread) {
      for (std::size_t i = 0; i < functions.size(); ++i) {
        const CFunction& function =
            functions[(i + static_cast<std::size_t>(thread)) % functions.size()];
        for (int round = 0; round < (function.name == "identify" ? 2 : 10); ++round) {
          EXPECT_EQ(function.call(nullptr), LATCHKEY_OK) << function.name;
        }
      }
    });
  }
}

TEST(CThreadTest, AKeyClosedByOneThreadServesTheOwnersOnOthers) {
  const Bytes message = BytesOf("a message");
  for (int round = 0; round < kRounds; ++round) {
    latchkey_key* key = OpenKey(LATCHKEY_RC2).Release();
    const Bytes expected = Encrypted(key, message);
    for (int i = 0; i < kThreads; ++i) ASSERT_EQ(latchkey_key_share(key), LATCHKEY_OK);
    OnThreads([&](int thread) {
      if (thread == 0) {
        EXPECT_EQ(latchkey_key_close(key), LATCHKEY_OK);  // the first owner's
      }
      EXPECT_EQ(Encrypted(key, message), expected);
      EXPECT_EQ(latchkey_key_close(key), LATCHKEY_OK);
    });
  }
}

TEST(CThreadTest, AStreamMayBeTheLastOwnerOnAnotherThread) {
  const Bytes message = BytesOf("a message");
  for (int round = 0; round < kRounds; ++round) {
    latchkey_key* const key = OpenKey(LATCHKEY_RC2).Release();
    const Bytes expected = Encrypted(key, message);
    Stream stream = OpenStream(key, LATCHKEY_ENCRYPT);
    std::jthread closing([key] { EXPECT_EQ(latchkey_key_close(key), LATCHKEY_OK); });
    std::jthread streaming([&] {
      Bytes result = Update(stream, message, 16).Result();
      const Bytes rest = Finish(stream).Result();
      result.insert(result.end(), rest.begin(), rest.end());
      EXPECT_EQ(result, expected);
      stream = Stream();
    });
  }
}

TEST(CThreadTest, BatchesOfSeveralThreadsRunAtTheSameTime) {
  const Key key = OpenKey(LATCHKEY_3DES);
  Column<std::int32_t> column;
  for (int i = 0; i < 5000; ++i) column.Add(SampleBytes(static_cast<std::size_t>(i % 50)));
  const std::size_t room = column.data.size() + 8 * 5000;
  ResultColumn<std::int32_t> expected(5000, room);
  const latchkey_records records = column.View();
  ASSERT_EQ(latchkey_encrypt_records(key, &records, 1, &expected.view, nullptr), LATCHKEY_OK);
  OnThreads([&](int thread) {
    ResultColumn<std::int32_t> results(5000, room);
    EXPECT_EQ(latchkey_encrypt_records(key, &records, static_cast<std::uint32_t>(thread),
                                       &results.view, nullptr),
              LATCHKEY_OK);
    EXPECT_EQ(results.data, expected.data);
    EXPECT_EQ(results.offsets, expected.offsets);
  });
}

struct CancelledCall {
  const CFunction& function;
  std::int32_t status = -1;
  std::atomic<bool> returned{false};
};

// Cancels itself first: the request is pending at each point of the function.
void* CallUnderCancellation(void* argument) {
  auto& call = *static_cast<CancelledCall*>(argument);
  ::pthread_cancel(::pthread_self());
  call.status = call.function.call(nullptr);
  call.returned = true;
  ::pthread_testcancel();
  return nullptr;
}

TEST(CCancellationTest, ARequestTakesEffectAfterTheFunction) {
  for (const CFunction& function : AllCFunctions()) {
    SCOPED_TRACE(function.name);
    CancelledCall call{function};
    pthread_t thread{};
    ASSERT_EQ(::pthread_create(&thread, nullptr, CallUnderCancellation, &call), 0);
    void* result = nullptr;
    ASSERT_EQ(::pthread_join(thread, &result), 0);
    EXPECT_TRUE(call.returned);
    EXPECT_EQ(call.status, LATCHKEY_OK);
    EXPECT_EQ(result, PTHREAD_CANCELED);
  }
}

// Whether `work` returns true in a child process, which is killed after a while.
bool HoldsInChild(const std::function<bool()>& work) {
  const pid_t child = ::fork();
  if (child == 0) {
    ::alarm(20);
    ::_exit(work() ? 0 : 1);
  }
  int status = -1;
  EXPECT_EQ(::waitpid(child, &status, 0), child);
  return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

TEST(CForkTest, BothProcessesCanUseOpenObjects) {
  const Key key = OpenKey(LATCHKEY_RC4);
  const Stream stream = OpenStream(key, LATCHKEY_ENCRYPT);
  const Bytes message = SampleBytes(40);
  const Bytes expected = Encrypted(key, message);
  Bytes begun = Update(stream, std::span(message).first(10), 10).Result();
  const auto finish = [&] {
    Bytes result = begun;
    const Bytes rest = Update(stream, std::span(message).subspan(10), 30).Result();
    result.insert(result.end(), rest.begin(), rest.end());
    return result == expected && Encrypted(key, message) == expected;
  };
  EXPECT_TRUE(HoldsInChild(finish));
  EXPECT_TRUE(finish());
}

// Forks at moments at which another thread is in a function.
TEST(CForkTest, TheChildMayCallEveryFunctionAfterAForkDuringACall) {
  const auto functions = AllCFunctions();
  std::atomic<bool> done{false};
  std::jthread busy([&] {
    while (!done) {
      for (const CFunction& function : functions) {
        if (function.name == "identify") continue;
        EXPECT_EQ(function.call(nullptr), LATCHKEY_OK);
      }
    }
  });
  for (int round = 0; round < kRounds; ++round) {
    const bool held = HoldsInChild([&] {
      return std::ranges::all_of(functions, [](const CFunction& function) {
        return function.name == "identify" || function.call(nullptr) == LATCHKEY_OK;
      });
    });
    EXPECT_TRUE(held) << "round " << round;
    if (!held) break;
  }
  done = true;
}

}  // namespace
}  // namespace latchkey::test
