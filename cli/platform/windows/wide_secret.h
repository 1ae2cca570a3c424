// Secret wide text as bytes.
#pragma once

#include <span>
#include <string>

#include "base/secure_memory.h"
#include "cli/platform/environment.h"

namespace latchkey::cli {

// Raises FileError under `name` for a character that the system's code page lacks (a question mark
// instead would be another password), and in UTF-8 for half a surrogate pair.
[[nodiscard]] WipedBytes BytesOf(std::span<const wchar_t> text, TextForm form,
                                 const std::string& name);

}  // namespace latchkey::cli
