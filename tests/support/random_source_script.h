// A random source of the system that a test controls.
#pragma once

#include <cstdint>
#include <functional>
#include <span>

namespace latchkey::test {

// Answers one request for random bytes: returns the number of bytes that it filled from the start,
// or a negative error number. On Windows, whose call fills all bytes or fails, any result but the
// span's size is a failure.
using RandomAnswer = std::function<long(std::span<std::uint8_t> bytes)>;

inline constexpr long kInputOutputError = -5;

// During its life, a function answers the calling thread's calls of the system's random source. The
// test program replaces the system function that platform/system_random.h calls; without a script
// the replacement passes calls to the system.
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
