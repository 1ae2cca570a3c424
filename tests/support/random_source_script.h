// The system's random source as a test wants it.
#pragma once

#include <cstdint>
#include <functional>
#include <span>

namespace latchkey::test {

// Answers one call for random bytes: gives how many bytes it has filled from the first on, or a
// negative error number for a failure. On Windows, whose call fills all or fails, anything but the
// span's size is a failure.
using RandomAnswer = std::function<long(std::span<std::uint8_t> bytes)>;

// While it lives, the calling thread's calls on the system's random source are answered by a
// function. The function of the system that platform/system_random.h asks is replaced in the test
// program for this; without a script it passes calls on.
class RandomSourceScript {
 public:
  explicit RandomSourceScript(RandomAnswer answer);
  RandomSourceScript(const RandomSourceScript&) = delete;
  RandomSourceScript& operator=(const RandomSourceScript&) = delete;
  ~RandomSourceScript();

  // The script in force on the calling thread, or null.
  [[nodiscard]] static RandomSourceScript* Current() noexcept;

  [[nodiscard]] long Answer(std::span<std::uint8_t> bytes) { return answer_(bytes); }

 private:
  RandomAnswer answer_;
};

}  // namespace latchkey::test
