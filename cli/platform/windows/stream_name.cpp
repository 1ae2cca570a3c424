#include "cli/platform/stream_name.h"

namespace latchkey::cli {

std::optional<int> InputDescriptor(const std::string& name) {
  return name == "-" ? std::optional(0) : std::nullopt;
}

bool IsStandardOutput(const std::string& name) { return name == "-"; }

}  // namespace latchkey::cli
