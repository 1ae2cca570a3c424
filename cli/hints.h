// What to try after a failure.
#pragma once

#include <cstdint>
#include <string_view>

namespace latchkey::cli {

// Advice for the check or trap with this location number; empty if no advice is known.
[[nodiscard]] std::string_view HintFor(std::int32_t location) noexcept;

}  // namespace latchkey::cli
