// Text in the encoding of the user's locale.
#pragma once

#include <string>

#include "base/secure_memory.h"

namespace latchkey::cli {

// The UTF-8 of secret text. Raises FileError under `name` for bytes that are not text in the
// locale's encoding.
[[nodiscard]] WipedBytes Utf8OfLocale(WipedBytes text, const std::string& name);

}  // namespace latchkey::cli
