// The choice of the code page by a client of the shared library. A process chooses once: tests
// before the last one use their choice in a child.
#include <gtest/gtest.h>
#include <pthread.h>
#include <sys/resource.h>

#include <latchkey/cls_crypto_api.h>
#include <latchkey/cls_main.h>
#include <latchkey/code_page.h>
#include <cstdlib>
#include <latch>
#include <set>
#include <thread>
#include <vector>

namespace latchkey::test {
namespace {

// Without the tables that the C library would read from files.
CodePageChoice SetWithoutFiles(std::uint32_t number) {
  rlimit earlier{};
  EXPECT_EQ(getrlimit(RLIMIT_NOFILE, &earlier), 0);
  const rlimit none{0, earlier.rlim_max};
  EXPECT_EQ(setrlimit(RLIMIT_NOFILE, &none), 0);
  const CodePageChoice choice = SetCodePage(number);
  EXPECT_EQ(setrlimit(RLIMIT_NOFILE, &earlier), 0);
  return choice;
}

char16_t CharacterOf(std::uint8_t byte) {
  return clsCryptoAPI().ByteArrayToString({byte, 0}).at(0);
}

// Each thread chooses its page and uses the one in force, which must be the same for all.
std::set<char16_t> CharactersSeenByRacingThreads(std::uint8_t byte) {
  const std::vector<std::uint32_t> numbers{1251, 1253, 1255, 1256};
  std::vector<char16_t> seen(numbers.size());
  std::latch start(static_cast<std::ptrdiff_t>(numbers.size()));
  std::vector<std::thread> threads;
  for (std::size_t i = 0; i < numbers.size(); ++i) {
    threads.emplace_back([&, i] {
      start.arrive_and_wait();
      static_cast<void>(SetCodePage(numbers[i]));
      seen[i] = CharacterOf(byte);
    });
  }
  for (std::thread& thread : threads) thread.join();
  return {seen.begin(), seen.end()};
}

// In a process that has read other tables before: without any, the C library never tries again.
bool KeepsTheChoiceWhenTablesAreMissing() {
  return SetCodePage(932) == CodePageChoice::Accepted &&
         SetWithoutFiles(950) == CodePageChoice::Unavailable && CharacterOf(0xB1) == 0xFF71;
}

TEST(SetCodePageTest, TablesThatCannotBeReadChangeNothing) {
  EXPECT_EXIT(std::_Exit(KeepsTheChoiceWhenTablesAreMissing() ? EXIT_SUCCESS : EXIT_FAILURE),
              testing::ExitedWithCode(EXIT_SUCCESS), "");
}

// Cancels itself first: the request is pending while the tables are read.
void* ChooseUnderPendingCancellation(void* choice) {
  ::pthread_cancel(::pthread_self());
  *static_cast<CodePageChoice*>(choice) = SetCodePage(932);
  ::pthread_testcancel();
  return nullptr;
}

bool CancellationWaitsForTheChoice() {
  CodePageChoice choice = CodePageChoice::Unknown;
  pthread_t thread{};
  void* result = nullptr;
  return ::pthread_create(&thread, nullptr, ChooseUnderPendingCancellation, &choice) == 0 &&
         ::pthread_join(thread, &result) == 0 && result == PTHREAD_CANCELED &&
         choice == CodePageChoice::Accepted;
}

TEST(SetCodePageTest, ACancellationTakesEffectAfterTheChoice) {
  EXPECT_EXIT(std::_Exit(CancellationWaitsForTheChoice() ? EXIT_SUCCESS : EXIT_FAILURE),
              testing::ExitedWithCode(EXIT_SUCCESS), "");
}

TEST(SetCodePageTest, TheLastChoiceBeforeTheFirstUseHolds) {
  for (const std::uint32_t number : {0U, 437U, 1249U, 1259U, 1200U, 65000U, 54936U}) {
    EXPECT_EQ(SetCodePage(number), CodePageChoice::Unknown) << number;
  }
  EXPECT_EQ(SetCodePage(932), CodePageChoice::Accepted);
  EXPECT_EQ(SetCodePage(1252), CodePageChoice::Accepted);

  const std::set<char16_t> seen = CharactersSeenByRacingThreads(0xE1);
  ASSERT_EQ(seen.size(), 1U);

  // Greek, Cyrillic, Hebrew and Arabic have other characters for this byte.
  int accepted = 0;
  for (const std::uint32_t number : {1251U, 1253U, 1255U, 1256U}) {
    const CodePageChoice choice = SetCodePage(number);
    accepted += choice == CodePageChoice::Accepted ? 1 : 0;
    EXPECT_TRUE(choice == CodePageChoice::Accepted || choice == CodePageChoice::TooLate);
  }
  EXPECT_EQ(accepted, 1);
  EXPECT_EQ(SetCodePage(1252), CodePageChoice::TooLate);
  EXPECT_EQ(SetCodePage(437), CodePageChoice::Unknown);
  EXPECT_EQ(CharacterOf(0xE1), *seen.begin());
}

}  // namespace
}  // namespace latchkey::test
