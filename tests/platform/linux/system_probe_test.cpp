// The Linux probe's clocks and its warning.
#include "platform/system_probe.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cmath>
#include <cstdlib>
#include <ctime>
#include <string>

namespace latchkey::test {
namespace {

using platform::MachineProbe;

// Sets the process's time zone and restores the earlier one.
class TimeZone {
 public:
  explicit TimeZone(const char* name) {
    if (const char* const before = std::getenv("TZ")) before_ = before;
    Set(name);
  }
  TimeZone(const TimeZone&) = delete;
  TimeZone& operator=(const TimeZone&) = delete;
  ~TimeZone() { Set(before_.empty() ? nullptr : before_.c_str()); }

 private:
  static void Set(const char* name) {
    if (name != nullptr) {
      ::setenv("TZ", name, 1);
    } else {
      ::unsetenv("TZ");
    }
    ::tzset();
  }

  std::string before_;
};

std::uint32_t MonotonicMilliseconds() {
  std::timespec now{};
  ::clock_gettime(CLOCK_MONOTONIC, &now);
  return static_cast<std::uint32_t>(now.tv_sec * 1000 + now.tv_nsec / 1'000'000);
}

// Between two readings of the clock, also when the count wraps.
TEST(LinuxProbeTest, TicksAreMillisecondsOfTheMonotonicClock) {
  const std::uint32_t before = MonotonicMilliseconds();
  const std::uint32_t ticks = MachineProbe().GetTickCount();
  const std::uint32_t after = MonotonicMilliseconds();
  EXPECT_LE(ticks - before, after - before);
}

// POSIX counts west as positive: these zones are 13.5 hours ahead of UTC and 11 hours behind.
TEST(LinuxProbeTest, NowIsLocalTime) {
  for (const auto& [zone, hours] :
       {std::pair{"EAST-13:30", 13.5}, {"WEST11", -11.0}, {"UTC0", 0.0}}) {
    const TimeZone set(zone);
    const auto universal = [] {
      return 25'569 + std::chrono::duration<double, std::ratio<86'400>>(
                          std::chrono::system_clock::now().time_since_epoch())
                          .count();
    };
    const double before = universal();
    const double now = MachineProbe().Now() - hours / 24;
    const double after = universal();
    constexpr double kRounding = 1e-9;  // of a day count of 16 digits
    EXPECT_GE(now, before - kRounding) << zone;
    EXPECT_LE(now, after + kRounding) << zone;
  }
}

TEST(LinuxProbeTest, AWarningIsOneLineOnStandardError) {
  testing::internal::CaptureStderr();
  MachineProbe().ShowWarning(u"Drive information for drive C:\\ has caused an error.");
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            "Drive information for drive C:\\ has caused an error.\n");
}

}  // namespace
}  // namespace latchkey::test
