// Strings in JSON text.
#pragma once

#include "cli/records/record_format.h"

namespace latchkey::cli {

// The JSON library is not used, because it does not wipe its strings, and these may be secrets.

// Appends the text, in UTF-8, of the characters between the quotes. Returns false for an invalid
// escape, such as half of a surrogate pair.
[[nodiscard]] bool UnescapeJson(ByteSpan escaped, WipedBytes& text);

// Appends the text in quotes. Escapes only characters that must be escaped.
void AppendJsonString(ByteSpan text, WipedBytes& output);

}  // namespace latchkey::cli
