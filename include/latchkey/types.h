// The values that the members take and return.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <variant>

namespace latchkey {

// A counted string of 16-bit characters. It may be empty and may hold NUL characters.
using Text = std::u16string;
using TextView = std::u16string_view;

// The values that a caller may pass as a Variant argument. Text is not copied: it must outlive the
// call.
struct Null {};
struct Date {
  double days;  // since 30 December 1899, the time of day as the fraction
};
using Empty = std::monostate;
using Variant = std::variant<Empty, Null, TextView, bool, std::int32_t, float, double, Date>;

}  // namespace latchkey
