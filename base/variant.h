// A value of any of the kinds that a Variant argument takes.
#pragma once

#include <cstdint>
#include <variant>

#include "base/text.h"

namespace latchkey {

// What a caller may hand to a Variant argument. Text is seen, not copied: it must outlive the call.
struct Null {};
struct Date {
  double days;  // since 30 December 1899, the time of day as the fraction
};
using Empty = std::monostate;
using Variant = std::variant<Empty, Null, TextView, bool, std::int32_t, float, double, Date>;

}  // namespace latchkey
