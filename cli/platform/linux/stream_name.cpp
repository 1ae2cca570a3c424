#include "cli/platform/stream_name.h"

#include <unistd.h>

#include <charconv>
#include <string_view>

#include "cli/platform/linux/given_descriptor.h"

namespace latchkey::cli {
namespace {

std::optional<int> Number(std::string_view digits) {
  int number = 0;
  const char* const end = digits.data() + digits.size();
  const auto read = std::from_chars(digits.data(), end, number);
  const bool isNumber = read.ec == std::errc() && read.ptr == end && number >= 0;
  return isNumber ? std::optional(number) : std::nullopt;
}

}  // namespace

std::optional<int> DescriptorNamed(const std::string& name) {
  if (name == "/dev/stdin") return STDIN_FILENO;
  if (name == "/dev/stdout") return STDOUT_FILENO;
  if (name == "/dev/stderr") return STDERR_FILENO;
  for (const std::string_view folder : {"/dev/fd/", "/proc/self/fd/"}) {
    if (name.starts_with(folder)) return Number(std::string_view(name).substr(folder.size()));
  }
  return std::nullopt;
}

std::optional<int> InputDescriptor(const std::string& name) {
  return name == "-" ? STDIN_FILENO : DescriptorNamed(name);
}

bool IsStandardOutput(const std::string& name) {
  return name == "-" || DescriptorNamed(name) == STDOUT_FILENO;
}

}  // namespace latchkey::cli
