#include "platform/linux/default_route.h"

#include <charconv>
#include <cstdint>
#include <vector>

namespace latchkey::platform {
namespace {

// The kernel's route flags, from its <linux/route.h>.
constexpr std::uint32_t kRouteUp = 0x0001;
constexpr std::uint32_t kRouteReject = 0x0200;

std::string_view TakeUpTo(std::string_view& rest, std::string_view separators) {
  const std::size_t end = rest.find_first_of(separators);
  const std::string_view taken = rest.substr(0, end);
  rest.remove_prefix(end == std::string_view::npos ? rest.size() : end + 1);
  return taken;
}

std::vector<std::string_view> FieldsOf(std::string_view line) {
  std::vector<std::string_view> fields;
  while (!line.empty()) {
    const std::string_view field = TakeUpTo(line, " \t");
    if (!field.empty()) fields.push_back(field);
  }
  return fields;
}

bool IsZero(std::string_view hexadecimal) {
  return !hexadecimal.empty() && hexadecimal.find_first_not_of('0') == std::string_view::npos;
}

bool LeavesTheMachine(std::string_view interface, std::string_view flagsField) {
  std::uint32_t flags = 0;
  const char* const end = flagsField.data() + flagsField.size();
  const auto read = std::from_chars(flagsField.data(), end, flags, 16);
  if (read.ec != std::errc() || read.ptr != end) return false;
  return (flags & kRouteUp) != 0 && (flags & kRouteReject) == 0 && interface != "lo";
}

// Interface, destination, gateway, flags, references, use, metric, mask, ...
bool IsDefaultIpv4Route(const std::vector<std::string_view>& fields) {
  return fields.size() >= 8 && IsZero(fields[1]) && IsZero(fields[7]) &&
         LeavesTheMachine(fields[0], fields[3]);
}

// Destination, its prefix length, source, its prefix length, next hop, metric, references, use,
// flags, interface.
bool IsDefaultIpv6Route(const std::vector<std::string_view>& fields) {
  return fields.size() >= 10 && IsZero(fields[0]) && IsZero(fields[1]) &&
         LeavesTheMachine(fields[9], fields[8]);
}

template <class Test>
bool AnyLine(std::string_view table, Test test) {
  while (!table.empty()) {
    if (test(FieldsOf(TakeUpTo(table, "\n")))) return true;
  }
  return false;
}

}  // namespace

bool HasDefaultIpv4Route(std::string_view table) { return AnyLine(table, IsDefaultIpv4Route); }

bool HasDefaultIpv6Route(std::string_view table) { return AnyLine(table, IsDefaultIpv6Route); }

}  // namespace latchkey::platform
