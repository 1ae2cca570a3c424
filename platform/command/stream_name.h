// Names that stand for what the process has open already.
#pragma once

#include <optional>
#include <string>

namespace latchkey::platform {

// The descriptor of the process that a name stands for: on Linux /dev/stdin and so on, /dev/fd/N,
// /proc/self/fd/N. Nothing for other names, and on Windows.
[[nodiscard]] std::optional<int> DescriptorNamed(const std::string& name);

// The same where "-" is standard input.
[[nodiscard]] std::optional<int> InputDescriptor(const std::string& name);

// Whether a name stands for standard output, as "-" does.
[[nodiscard]] bool IsStandardOutput(const std::string& name);

}  // namespace latchkey::platform
