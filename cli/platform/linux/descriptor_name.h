// Names of the process's own descriptors.
#pragma once

#include <optional>
#include <string>

namespace latchkey::cli {

// The descriptor that a name like /dev/stdout or /dev/fd/1 denotes; nothing for other names.
[[nodiscard]] std::optional<int> DescriptorNamed(const std::string& name);

}  // namespace latchkey::cli
