#include "tests/support/call_journal.h"

#include <algorithm>
#include <array>
#include <cstdio>

namespace latchkey::test {
namespace {

std::string_view NameOf(std::string_view entry) {
  return entry.substr(0, entry.find_first_of("(="));
}

}  // namespace

CallJournal::Entries CallJournal::Named(std::initializer_list<std::string_view> names) const {
  Entries found;
  for (const std::string& entry : entries_) {
    if (std::find(names.begin(), names.end(), NameOf(entry)) != names.end()) found.push_back(entry);
  }
  return found;
}

CallJournal::Entries Joined(CallJournal::Entries first, const CallJournal::Entries& second) {
  first.insert(first.end(), second.begin(), second.end());
  return first;
}

std::string Printable(TextView text) {
  std::string printable;
  for (const char16_t character : text) {
    if (character >= 0x20 && character < 0x7F) {
      printable += static_cast<char>(character);
    } else {
      std::array<char, 8> escape{};
      std::snprintf(escape.data(), escape.size(), "\\u%04X", static_cast<unsigned>(character));
      printable += escape.data();
    }
  }
  return printable;
}

}  // namespace latchkey::test
