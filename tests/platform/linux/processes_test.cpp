#include "platform/linux/processes.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <set>
#include <stdexcept>
#include <string>

#include "crypto/seed/window_count.h"
#include "tests/support/module_scope.h"

namespace latchkey::test {
namespace {

std::multiset<pid_t> ProcessesIn(const std::string& folder) {
  std::multiset<pid_t> processes;
  platform::VisitProcesses(folder.c_str(), [&](pid_t process) { processes.insert(process); });
  return processes;
}

// A folder that is removed after the test.
class ProcessFolderTest : public ::testing::Test {
 protected:
  ProcessFolderTest() {
    std::string name = ::testing::TempDir() + "processes-XXXXXX";
    if (::mkdtemp(name.data()) == nullptr) throw std::runtime_error("no folder");
    folder = name;
  }
  ~ProcessFolderTest() override { std::filesystem::remove_all(folder); }

  std::filesystem::path folder;
};

TEST_F(ProcessFolderTest, OnlyNumericEntriesAreProcesses) {
  for (const char* name : {"1", "22", "4194304", "self", "3x", "x3", "0", "-5", "99999999999"}) {
    std::filesystem::create_directory(folder / name);
  }
  EXPECT_EQ(ProcessesIn(folder), (std::multiset<pid_t>{1, 22, 4194304}));
}

TEST_F(ProcessFolderTest, WithoutTheFolderNoProcessIsVisited) {
  EXPECT_TRUE(ProcessesIn(folder / "missing").empty());
}

TEST_F(ProcessFolderTest, AnExceptionEndsTheWalkAndLeavesNoDescriptor) {
  std::filesystem::create_directory(folder / "7");
  const int before = ::dup(STDERR_FILENO);
  ::close(before);
  EXPECT_THROW(platform::VisitProcesses(folder.c_str(), [](pid_t) { throw std::logic_error("7"); }),
               std::logic_error);
  const int after = ::dup(STDERR_FILENO);
  ::close(after);
  EXPECT_EQ(after, before);
}

TEST(ProcessesTest, ThisProcessIsVisitedOnce) {
  EXPECT_EQ(ProcessesIn("/proc").count(::getpid()), 1U);
}

// Other processes start and end meanwhile; this one stays.
TEST(ProcessesTest, AreCountedInsteadOfWindows) {
  const ModuleScope scope;
  double count = 0;
  double sum = 0;
  CountWindows(count, sum);
  EXPECT_GE(count, 1);
  EXPECT_GE(sum, static_cast<double>(::getpid()));
}

std::multiset<pid_t> ProcessesAt(platform::RecentProcesses& processes, std::uint32_t tick) {
  std::multiset<pid_t> found;
  processes.Visit(tick, [&](pid_t process) { found.insert(process); });
  return found;
}

// Runs `body` with the number of a process that exists meanwhile.
template <class Body>
void WithChild(Body&& body) {
  const pid_t child = ::fork();
  if (child == 0) {
    ::pause();
    ::_exit(0);
  }
  body(child);
  ::kill(child, SIGKILL);
  EXPECT_EQ(::waitpid(child, nullptr, 0), child);
}

TEST(RecentProcessesTest, AreReadAgainInTheNextMillisecond) {
  platform::RecentProcesses processes;
  EXPECT_EQ(ProcessesAt(processes, 7).count(::getpid()), 1U);
  WithChild([&](pid_t child) {
    EXPECT_EQ(ProcessesAt(processes, 7).count(child), 0U);
    EXPECT_EQ(ProcessesAt(processes, 8).count(child), 1U);
  });
  EXPECT_EQ(ProcessesAt(processes, 9).count(::getpid()), 1U);
}

// A visit within a visit, which behaves like one on another thread.
TEST(RecentProcessesTest, AVisitDuringAnotherWalksOverProcItself) {
  platform::RecentProcesses processes;
  EXPECT_EQ(ProcessesAt(processes, 7).count(::getpid()), 1U);
  WithChild([&](pid_t child) {
    int visits = 0;
    processes.Visit(7, [&](pid_t process) {
      if (process != ::getpid()) return;
      ++visits;
      EXPECT_EQ(ProcessesAt(processes, 7).count(child), 1U);
    });
    EXPECT_EQ(visits, 1);
  });
}

TEST(RecentProcessesTest, AnExceptionOfTheVisitorLeavesThemUsable) {
  platform::RecentProcesses processes;
  EXPECT_THROW(processes.Visit(7, [](pid_t) { throw std::logic_error("7"); }), std::logic_error);
  WithChild([&](pid_t child) { EXPECT_EQ(ProcessesAt(processes, 7).count(child), 0U); });
}

}  // namespace
}  // namespace latchkey::test
