// Secret wide text as codes of the system's code page, the form of the component's passwords on
// Windows.
#pragma once

#include <span>
#include <string>

#include "base/secure_memory.h"

namespace latchkey::cli {

// Raises FileError under `name` for a character that the code page lacks: a question mark instead
// would be another password.
[[nodiscard]] WipedBytes CodePageBytes(std::span<const wchar_t> text, const std::string& name);

}  // namespace latchkey::cli
