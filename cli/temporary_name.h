// Names of unfinished outputs: ".latchkey-", 16 random characters and a check sum of these.
#pragma once

#include <string>
#include <string_view>

namespace latchkey::cli {

// A name without folder that no other file has; empty if the system has no random bytes.
[[nodiscard]] std::string NewTemporaryName();

// Whether NewTemporaryName made the name (one in 2^40 other names of that form passes too).
[[nodiscard]] bool IsTemporaryName(std::string_view name) noexcept;

}  // namespace latchkey::cli
