// The library's need of a thread's stack.
#include <gtest/gtest.h>
#include <pthread.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <exception>
#include <functional>
#include <iostream>
#include <span>
#include <stdexcept>

#include "tests/system/host/operations.h"

namespace latchkey::test {
namespace {

constexpr std::size_t kPage = 4096;
constexpr std::size_t kAmple = 256 * 1024;
// The limit for a whole thread stack, including the C library's data at its top (descriptor,
// thread-local variables, about 4 KiB) and the frames that call the operation.
constexpr std::size_t kEnough = 32 * 1024;
constexpr std::uint8_t kPaint = 0xA5;

// Painted memory for a stack, above an inaccessible page.
class PaintedStack {
 public:
  explicit PaintedStack(std::size_t size) : size_(size + kPage) {
    void* const memory = ::mmap(nullptr, size_, PROT_READ | PROT_WRITE,
                                MAP_PRIVATE | MAP_ANONYMOUS | MAP_STACK, -1, 0);
    if (memory == MAP_FAILED || ::mprotect(memory, kPage, PROT_NONE) != 0) {
      throw std::runtime_error("no memory for a stack");
    }
    memory_ = static_cast<std::uint8_t*>(memory);
    std::fill(Usable().begin(), Usable().end(), kPaint);
  }
  PaintedStack(const PaintedStack&) = delete;
  PaintedStack& operator=(const PaintedStack&) = delete;
  ~PaintedStack() { ::munmap(memory_, size_); }

  [[nodiscard]] std::span<std::uint8_t> Usable() const { return {memory_ + kPage, size_ - kPage}; }

  // From the top down to the lowest byte that was written to.
  [[nodiscard]] std::size_t Used() const {
    const auto lowest = std::find_if(Usable().begin(), Usable().end(),
                                     [](std::uint8_t byte) { return byte != kPaint; });
    return static_cast<std::size_t>(Usable().end() - lowest);
  }

 private:
  std::size_t size_;
  std::uint8_t* memory_ = nullptr;
};

void* Run(void* operation) {
  static_cast<const Operation*>(operation)->run();
  return nullptr;
}

// Runs the operation as a thread on a stack of that size. Returns the bytes used.
std::size_t StackUsedBy(const Operation& operation, std::size_t size) {
  const PaintedStack stack(size);
  pthread_attr_t attributes;
  pthread_t thread{};
  ::pthread_attr_init(&attributes);
  ::pthread_attr_setstack(&attributes, stack.Usable().data(), stack.Usable().size());
  // NOLINTNEXTLINE(cppcoreguidelines-pro-type-const-cast): the thread does not change it
  auto* const argument = const_cast<Operation*>(&operation);
  if (::pthread_create(&thread, &attributes, Run, argument) != 0 ||
      ::pthread_join(thread, nullptr) != 0) {
    throw std::runtime_error("no thread");
  }
  ::pthread_attr_destroy(&attributes);
  return stack.Used();
}

// The bytes used in a process that has not used the library yet, since one-time work needs stack
// too. 0 if the process fails.
std::size_t StackUsedAtFirst(const Operation& operation) {
  int ends[2] = {};  // NOLINT(*-avoid-c-arrays): the argument of pipe
  if (::pipe(ends) != 0) throw std::runtime_error("no pipe");
  const pid_t child = ::fork();
  if (child == 0) {
    const std::size_t used = StackUsedBy(operation, kAmple);
    const bool written = ::write(ends[1], &used, sizeof used) == sizeof used;
    std::_Exit(written ? EXIT_SUCCESS : EXIT_FAILURE);
  }
  ::close(ends[1]);
  std::size_t used = 0;
  const bool read = ::read(ends[0], &used, sizeof used) == sizeof used;
  ::close(ends[0]);
  int status = 0;
  ::waitpid(child, &status, 0);
  return read && status == 0 ? used : 0;
}

TEST(SmallStackTest, EachOperationNeedsAtMost32KiB) {
  const std::size_t nothing = StackUsedAtFirst({"nothing", [] {}});
  std::size_t most = 0;
  for (const Operation& operation : AllOperations()) {
    const std::size_t used = StackUsedAtFirst(operation);
    EXPECT_GT(used, 0U) << operation.name;
    EXPECT_LE(used, kEnough) << operation.name;
    most = std::max(most, used);
  }
  std::cout << "stack used at most: " << most << " bytes, " << nothing
            << " of them by any thread\n";
}

TEST(SmallStackDeathTest, EachOperationRunsOnAStackOf32KiB) {
  EXPECT_EXIT(
      {
        for (const Operation& operation : AllOperations()) StackUsedBy(operation, kEnough);
        std::_Exit(EXIT_SUCCESS);
      },
      ::testing::ExitedWithCode(EXIT_SUCCESS), "");
}

}  // namespace
}  // namespace latchkey::test
