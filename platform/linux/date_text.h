// The text of an Automation date in the short form of English (United States).
#pragma once

#include <optional>
#include <string>

namespace latchkey::platform {

// `days` since 30 December 1899, the time of day as the fraction (counted forward also for negative
// days), rounded to the second: "12/31/1899", "6:00:00 PM" on day 0, or both with a space between.
// Nothing outside the years 100 to 9999.
[[nodiscard]] std::optional<std::string> TextOfDate(double days);

}  // namespace latchkey::platform
