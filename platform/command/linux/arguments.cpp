#include "platform/command/arguments.h"

#include <span>

namespace latchkey::platform {

std::vector<std::string> ProgramArguments(int count, const char* const* arguments) {
  const std::span all(arguments, static_cast<std::size_t>(count));
  return {all.begin() + (all.empty() ? 0 : 1), all.end()};
}

}  // namespace latchkey::platform
