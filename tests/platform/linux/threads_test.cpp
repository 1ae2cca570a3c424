#include "platform/linux/threads.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <set>
#include <stdexcept>
#include <string>
#include <thread>

#include "crypto/seed/window_count.h"
#include "tests/support/module_scope.h"

namespace latchkey::test {
namespace {

std::multiset<pid_t> ThreadsIn(const std::string& folder) {
  std::multiset<pid_t> threads;
  platform::VisitThreads(folder.c_str(), [&](pid_t thread) { threads.insert(thread); });
  return threads;
}

// A folder that is removed after the test.
class ThreadFolderTest : public ::testing::Test {
 protected:
  ThreadFolderTest() {
    std::string name = ::testing::TempDir() + "threads-XXXXXX";
    if (::mkdtemp(name.data()) == nullptr) throw std::runtime_error("no folder");
    folder = name;
  }
  ~ThreadFolderTest() override { std::filesystem::remove_all(folder); }

  std::filesystem::path folder;
};

TEST_F(ThreadFolderTest, OnlyNumericEntriesAreThreads) {
  for (const char* name : {"1", "22", "4194304", "self", "3x", "x3", "0", "-5", "99999999999"}) {
    std::filesystem::create_directory(folder / name);
  }
  EXPECT_EQ(ThreadsIn(folder), (std::multiset<pid_t>{1, 22, 4194304}));
}

TEST_F(ThreadFolderTest, WithoutTheFolderNoThreadIsVisited) {
  EXPECT_TRUE(ThreadsIn(folder / "missing").empty());
}

TEST_F(ThreadFolderTest, AnExceptionEndsTheWalkAndLeavesNoDescriptor) {
  std::filesystem::create_directory(folder / "7");
  const int before = ::dup(STDERR_FILENO);
  ::close(before);
  EXPECT_THROW(platform::VisitThreads(folder.c_str(), [](pid_t) { throw std::logic_error("7"); }),
               std::logic_error);
  const int after = ::dup(STDERR_FILENO);
  ::close(after);
  EXPECT_EQ(after, before);
}

TEST(ThreadsTest, EachThreadIsVisitedOnce) {
  std::thread([] {
    const std::multiset<pid_t> threads = ThreadsIn("/proc/self/task");
    EXPECT_EQ(threads.count(::getpid()), 1U);  // the first thread has the number of the process
    EXPECT_EQ(threads.count(::gettid()), 1U);
  }).join();
}

TEST(ThreadsTest, AreCountedInsteadOfWindows) {
  std::thread([] {
    const ModuleScope scope;
    double count = 0;
    double sum = 0;
    CountWindows(count, sum);
    EXPECT_EQ(count, 2);
    EXPECT_EQ(sum, static_cast<double>(::getpid()) + ::gettid());
  }).join();
}

}  // namespace
}  // namespace latchkey::test
