#include "cli/platform/arguments.h"

#include <span>

namespace latchkey::cli {

std::vector<std::string> ProgramArguments(int count, const char* const* arguments) {
  const std::span all(arguments, static_cast<std::size_t>(count));
  return {all.begin() + (all.empty() ? 0 : 1), all.end()};
}

}  // namespace latchkey::cli
