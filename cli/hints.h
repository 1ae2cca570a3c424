// What to try after a failure.
#pragma once

#include <cstdint>
#include <string_view>

namespace latchkey::cli {

// Advice for the check or trap with that location; may be empty.
[[nodiscard]] std::string_view HintFor(std::int32_t location) noexcept;

}  // namespace latchkey::cli
