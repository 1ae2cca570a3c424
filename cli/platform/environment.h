// Secrets in the environment.
#pragma once

#include <optional>
#include <string>

#include "base/secure_memory.h"

namespace latchkey::cli {

// The form in which a secret text is read from the terminal or the environment.
enum class TextForm {
  // Exact bytes on Linux, codes of the system's code page on Windows.
  Bytes,
  // UTF-8, on Linux converted from the encoding of the locale, on Windows from UTF-16.
  Utf8
};

// Returns the value of a variable, wipes it and removes the variable from the process's
// environment. Nothing if it is not set. Raises FileError for text that is not in the form.
[[nodiscard]] std::optional<WipedBytes> TakeVariable(const std::string& name, TextForm form);

}  // namespace latchkey::cli
