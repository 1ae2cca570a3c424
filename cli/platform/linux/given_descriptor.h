// Descriptors that the process was started with: the only ones that a user can mean by a number.
//
// What the process opens itself gets the lowest free number, which may be the one that the user
// named. The two are told apart by close-on-exec: what came through exec cannot have it, and
// whatever is opened here must.
#pragma once

#include <string>

#include "cli/platform/file_handle.h"

namespace latchkey::cli {

// Raises FileError, with the words for a descriptor that is not open, unless the process was
// started with it.
void RequireGiven(int descriptor, const char* action, const std::string& name);

// A descriptor of its own for the same open file. Raises FileError as RequireGiven does.
[[nodiscard]] UniqueFile CopyOfGiven(int descriptor, const char* action, const std::string& name);

}  // namespace latchkey::cli
