// Strings in JSON text.
#pragma once

#include "cli/records/record_format.h"

namespace latchkey::cli {

// Not the JSON library's: its strings are not wiped, and these may be secrets.

// Appends the text, in UTF-8, that the characters between the quotes mean. False for a wrong escape,
// also half of a surrogate pair.
[[nodiscard]] bool UnescapeJson(ByteSpan escaped, WipedBytes& text);

// Appends the text in quotes. Escapes only what must be escaped.
void AppendJsonString(ByteSpan text, WipedBytes& output);

}  // namespace latchkey::cli
