// What happened during a test, in order.
#pragma once

#include <initializer_list>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "latchkey/types.h"

namespace latchkey::test {

// One line of text for each thing that happened. The record spy and the scripted provider write
// into one journal, so that the order of record writes and provider calls can be compared. The name
// of an entry is what stands before its first "(" or "=".
class CallJournal {
 public:
  using Entries = std::vector<std::string>;

  void Add(std::string entry) { entries_.push_back(std::move(entry)); }
  void AppendToLast(std::string_view text) { entries_.back() += text; }
  void Clear() { entries_.clear(); }

  [[nodiscard]] const Entries& All() const { return entries_; }

  // The entries that bear one of the names, in order.
  [[nodiscard]] Entries Named(std::initializer_list<std::string_view> names) const;

  // How many entries bear the name.
  [[nodiscard]] std::size_t Count(std::string_view name) const { return Named({name}).size(); }

 private:
  Entries entries_;
};

// One list behind the other.
[[nodiscard]] CallJournal::Entries Joined(CallJournal::Entries first,
                                          const CallJournal::Entries& second);

// ASCII as it stands, every other character as \uXXXX.
[[nodiscard]] std::string Printable(TextView text);

}  // namespace latchkey::test
