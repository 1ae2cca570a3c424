// Descriptors that the process was started with: the only ones that a user can name by a number.
//
// A file that the process opens itself gets the lowest free number, which may be the one that the
// user named. Close-on-exec distinguishes the two: inherited descriptors cannot have it, and all
// files opened here must.
#pragma once

#include <optional>
#include <string>

#include "cli/platform/file_handle.h"

namespace latchkey::cli {

// The descriptor that a name like /dev/stdout or /dev/fd/1 denotes; nothing for other names.
[[nodiscard]] std::optional<int> DescriptorNamed(const std::string& name);

[[nodiscard]] inline int DescriptorOf(const UniqueFile& file) noexcept {
  return static_cast<int>(file.Get());
}

// Raises FileError, with the text for a closed descriptor, unless the process was started with it.
void RequireGiven(int descriptor, const char* action, const std::string& name);

// A new descriptor for the same open file. Raises FileError as RequireGiven does.
[[nodiscard]] UniqueFile CopyOfGiven(int descriptor, const char* action, const std::string& name);

}  // namespace latchkey::cli
