// Names of files that the process has open.
#pragma once

#include <optional>
#include <string>

namespace latchkey::cli {

// The descriptor that an input's name denotes: 0 for "-". On Linux, names of the process's own
// descriptors are recognized too: /dev/stdin and the like, /dev/fd/N, /proc/self/fd/N. Nothing for
// other names.
[[nodiscard]] std::optional<int> InputDescriptor(const std::string& name);

// Whether a name denotes standard output: "-", and on Linux the names of descriptor 1.
[[nodiscard]] bool IsStandardOutput(const std::string& name);

}  // namespace latchkey::cli
