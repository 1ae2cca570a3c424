// Names of unfinished outputs: ".latchkey-", 16 random characters and a check sum of these.
#pragma once

#include <string>
#include <string_view>

namespace latchkey::cli {

// A name without a folder, which no other file has. Empty if the system returns no random bytes.
[[nodiscard]] std::string NewTemporaryName();

// Whether NewTemporaryName made the name. Also true for one in 2^40 other names of that form.
[[nodiscard]] bool IsTemporaryName(std::string_view name) noexcept;

}  // namespace latchkey::cli
