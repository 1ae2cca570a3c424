// Names that stand for what the process has open already.
#pragma once

#include <string>

namespace latchkey::platform {

// "-", and on Linux the names under which a process finds its own descriptors: /dev/stdin and so
// on, /dev/fd/N, /proc/self/fd/N.
[[nodiscard]] bool IsStandardInput(const std::string& name);
[[nodiscard]] bool IsStandardOutput(const std::string& name);

}  // namespace latchkey::platform
