#include "tests/support/linux/stack_residue.h"

#include <pthread.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <stdexcept>

namespace latchkey::test {
namespace {

constexpr std::size_t kStackSize = 1 << 18;
using Stack = std::array<std::uint8_t, kStackSize>;

alignas(4096) Stack stack;

struct Job {
  const std::function<void()>& run;
  Stack& picture;
  std::size_t depth;  // the size of the part below the function that runs it
};

// The thread itself copies its stack, since its end uses the stack again. But the copy uses the
// same part of the stack as `run`, so it must use as little of it as possible.
void* RunJob(void* argument) {
  Job& job = *static_cast<Job*>(argument);
  const auto* const frame = static_cast<const std::uint8_t*>(__builtin_frame_address(0));
  job.depth = static_cast<std::size_t>(frame - stack.data());
  job.run();
  std::memcpy(job.picture.data(), stack.data(), kStackSize);
  return nullptr;
}

void Check(int error) {
  if (error != 0) throw std::runtime_error(std::strerror(error));  // NOLINT(concurrency-mt-unsafe)
}

// Returns the depth.
std::size_t TakePicture(const std::function<void()>& run, Stack& picture) {
  stack.fill(0);
  Job job{run, picture, 0};
  pthread_attr_t attributes;
  Check(pthread_attr_init(&attributes));
  Check(pthread_attr_setstack(&attributes, stack.data(), stack.size()));
  pthread_t thread{};
  Check(pthread_create(&thread, &attributes, &RunJob, &job));
  Check(pthread_join(thread, nullptr));
  Check(pthread_attr_destroy(&attributes));
  return job.depth;
}

}  // namespace

std::size_t DifferingStackBytes(const std::function<void(int which)>& prepare,
                                const std::function<void()>& run) {
  static std::array<Stack, 2> pictures;
  static Stack picture;  // the same for both runs, so that its address does not differ
  std::size_t depth = 0;
  for (const std::size_t which : {0U, 0U, 1U}) {
    prepare(static_cast<int>(which));
    depth = TakePicture(run, picture);
    pictures.at(which) = picture;
  }
  std::size_t differing = 0;
  for (std::size_t i = 0; i < depth; ++i) {
    differing += pictures[0][i] != pictures[1][i] ? 1U : 0U;
  }
  return differing;
}

std::size_t StackCopiesOf(std::span<const std::uint8_t> pattern, const std::function<void()>& run) {
  static Stack picture;
  const auto depth = static_cast<std::ptrdiff_t>(TakePicture(run, picture));
  std::size_t copies = 0;
  for (auto from = picture.begin();; ++from, ++copies) {
    from = std::search(from, picture.begin() + depth, pattern.begin(), pattern.end());
    if (from == picture.begin() + depth) return copies;
  }
}

}  // namespace latchkey::test
