// Elapsed time in milliseconds.
#pragma once

#include <cstdint>

#include "latchkey/export.h"

namespace latchkey {

// Measures from its creation, or from the last Start, to each reading. Neither member fails or
// writes the error record, so a timer works on any thread. Use an instance on one thread at a time.
class LATCHKEY_API clsTimer {
 public:
  clsTimer();

  // Sets the start mark to now.
  void Start() noexcept;

  // Milliseconds since the start mark, which does not change: the difference of the two readings of
  // the tick counter, both as signed 32-bit numbers. 0 if the difference does not fit 32 bits (the
  // counter passed 0x7FFFFFFF in between, as it does once in 49.7 days of uptime). An interval of
  // 2^31 milliseconds or more gives 0 or its low 32 bits.
  [[nodiscard]] std::int32_t GetElapsedTime() noexcept;

 private:
  std::int32_t startTick_ = 0;
  std::int32_t endTick_ = 0;
};

}  // namespace latchkey
