#include "platform/linux/date_text.h"

#include <chrono>
#include <cmath>

namespace latchkey::platform {
namespace {

constexpr long kFirstDay = -657'434;  // 1 January 100
constexpr long kLastDay = 2'958'465;  // 31 December 9999
constexpr long kSecondsPerDay = 86'400;

std::string DayText(long day) {
  using std::chrono::December;
  constexpr std::chrono::sys_days kDayZero = std::chrono::year(1899) / December / 30;
  const std::chrono::year_month_day date(kDayZero + std::chrono::days(day));
  return std::to_string(static_cast<unsigned>(date.month())) + '/' +
         std::to_string(static_cast<unsigned>(date.day())) + '/' +
         std::to_string(static_cast<int>(date.year()));
}

std::string TwoDigits(long number) { return (number < 10 ? "0" : "") + std::to_string(number); }

std::string TimeText(long second) {
  const long hour = second / 3600;
  return std::to_string(hour % 12 == 0 ? 12 : hour % 12) + ':' + TwoDigits(second / 60 % 60) + ':' +
         TwoDigits(second % 60) + (hour < 12 ? " AM" : " PM");
}

}  // namespace

std::optional<std::string> TextOfDate(double days) {
  const double whole = std::trunc(days);
  if (!(whole >= kFirstDay && whole <= kLastDay)) return std::nullopt;
  auto day = static_cast<long>(whole);
  // Most half seconds are not exact as a Double; in ten-thousandths of a second they are again.
  const long fraction = std::lround(std::fabs(days - whole) * kSecondsPerDay * 10'000);
  long second = (fraction + 5'000) / 10'000;
  if (second == kSecondsPerDay) {
    second = 0;
    if (++day > kLastDay) return std::nullopt;
  }
  if (whole == 0) return TimeText(second);
  return days == whole ? DayText(day) : DayText(day) + ' ' + TimeText(second);
}

}  // namespace latchkey::platform
