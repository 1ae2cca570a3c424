// Secrets in the environment.
#pragma once

#include <optional>
#include <string>

#include "base/secure_memory.h"
#include "cli/platform/secret_text.h"

namespace latchkey::cli {

// The value of a variable, which is wiped and removed from the environment of the process. Nothing
// if it is not set. Raises FileError for text that does not have that form.
[[nodiscard]] std::optional<WipedBytes> TakeVariable(const std::string& name, TextForm form);

}  // namespace latchkey::cli
