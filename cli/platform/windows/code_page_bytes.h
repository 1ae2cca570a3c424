// Wide text that is a secret, as the codes of the system's code page: the form in which the
// component takes a password on Windows.
#pragma once

#include <span>
#include <string>

#include "base/secure_memory.h"

namespace latchkey::cli {

// Raises FileError under `name` for a character that the code page does not have: a question mark
// in its place would be another password.
[[nodiscard]] WipedBytes CodePageBytes(std::span<const wchar_t> text, const std::string& name);

}  // namespace latchkey::cli
