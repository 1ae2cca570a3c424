// Names of files that the process has open.
#pragma once

#include <optional>
#include <string>

namespace latchkey::cli {

// The descriptor that an input's name denotes: 0 for "-", and on Linux also the names of the
// process's own descriptors: /dev/stdin and so on, /dev/fd/N, /proc/self/fd/N. Nothing for other
// names.
[[nodiscard]] std::optional<int> InputDescriptor(const std::string& name);

// Whether a name denotes standard output, as "-" does.
[[nodiscard]] bool IsStandardOutput(const std::string& name);

}  // namespace latchkey::cli
