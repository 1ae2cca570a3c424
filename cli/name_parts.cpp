#include "cli/name_parts.h"

#include <algorithm>

#include "cli/platform/file_state.h"

namespace latchkey::cli {
namespace {

// Where the last part begins. A drive's colon is a separator only where the system has drives.
std::size_t StartOfLast(std::string_view name) {
  const bool hasDrives = IsSeparator('\\');
  const auto isBorder = [&](char character) {
    return IsSeparator(character) || (hasDrives && character == ':');
  };
  const auto border = std::find_if(name.rbegin(), name.rend(), isBorder);
  return static_cast<std::size_t>(name.rend() - border);
}

}  // namespace

std::string FolderOf(std::string_view name) {
  const std::string_view folder = WithoutEnd(BeforeLastPart(name));
  return folder.empty() ? "." : std::string(folder);
}

std::string_view BeforeLastPart(std::string_view name) { return name.substr(0, StartOfLast(name)); }

std::string_view LastPartOf(std::string_view name) { return name.substr(StartOfLast(name)); }

std::string_view WithoutEnd(std::string_view name) {
  while (name.size() > 1 && IsSeparator(name.back())) name.remove_suffix(1);
  return name;
}

std::string Joined(std::string_view folder, std::string_view name) {
  std::string joined(folder);
  if (!joined.empty() && !IsSeparator(joined.back())) joined += '/';
  return joined += name;
}

std::filesystem::path PathOf(const std::string& name) {
  return {std::u8string(name.begin(), name.end())};
}

std::size_t StartOfEntry(std::string_view name) {
  const std::string_view last = LastPartOf(name);
  return last == "." || last == ".." ? name.size() : name.size() - last.size();
}

std::size_t StartOfRelative(std::string_view name) {
  std::size_t start = 0;
  const auto isAt = [&](std::size_t place) {
    return place < name.size() && IsSeparator(name[place]);
  };
  if (IsSeparator('\\') && name.size() > 1 && name[1] == ':') start = 2;
  for (;;) {
    if (isAt(start)) {
      ++start;
    } else if (start < name.size() && name[start] == '.' && isAt(start + 1)) {
      start += 2;
    } else {
      return start;
    }
  }
}

bool HasParent(std::string_view name) {
  std::size_t start = 0;
  for (std::size_t i = 0; i <= name.size(); ++i) {
    if (i < name.size() && !IsSeparator(name[i])) continue;
    if (name.substr(start, i - start) == "..") return true;
    start = i + 1;
  }
  return false;
}

}  // namespace latchkey::cli
