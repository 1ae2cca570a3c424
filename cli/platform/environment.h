// Secrets in the environment.
#pragma once

#include <optional>
#include <string>

#include "base/secure_memory.h"
#include "cli/platform/secret_text.h"

namespace latchkey::cli {

// Returns the value of a variable, wipes it and removes the variable from the process's
// environment. Nothing if it is not set. Raises FileError for text that is not in the form.
[[nodiscard]] std::optional<WipedBytes> TakeVariable(const std::string& name, TextForm form);

}  // namespace latchkey::cli
