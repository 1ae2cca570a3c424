// Secrets in the environment.
#pragma once

#include <optional>
#include <string>

#include "base/secure_memory.h"

namespace latchkey::cli {

// The value of a variable, which is wiped and removed from the environment of the process. Exact
// bytes on Linux, codes of the system's code page on Windows. Nothing if it is not set. Raises
// FileError for a character that the code page lacks.
[[nodiscard]] std::optional<WipedBytes> TakeVariable(const std::string& name);

}  // namespace latchkey::cli
