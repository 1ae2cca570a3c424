// Names that stand for what the process has open already.
#pragma once

#include <optional>
#include <string>

namespace latchkey::cli {

// The descriptor that a name of an input stands for: "-" for 0, and on Linux the names under which
// a process finds its own descriptors: /dev/stdin and so on, /dev/fd/N, /proc/self/fd/N. Nothing
// for other names.
[[nodiscard]] std::optional<int> InputDescriptor(const std::string& name);

// Whether a name stands for standard output, as "-" does.
[[nodiscard]] bool IsStandardOutput(const std::string& name);

}  // namespace latchkey::cli
