#include "tests/support/call_journal.h"

#include <algorithm>
#include <array>
#include <cstdio>

namespace latchkey::test {
namespace {

struct ArgumentPrinter {
  std::ostream& out;

  void operator()(bool value) const { out << (value ? "True" : "False"); }
  void operator()(const std::string& text) const { out << '"' << text << '"'; }
  void operator()(const HandleName& handle) const { PrintTo(handle, &out); }
  void operator()(const Bytes& bytes) const { out << (bytes.empty() ? "-" : Hex(bytes)); }
  void operator()(std::int64_t number) const {
    std::array<char, 24> text{};
    std::snprintf(text.data(), text.size(), number > 0xFFF ? "0x%llX" : "%lld",
                  static_cast<long long>(number));
    out << text.data();
  }
};

}  // namespace

void PrintTo(const HandleName& name, std::ostream* out) {
  static constexpr std::array kKinds{"no handle ", "context", "hash", "key"};
  *out << kKinds.at(static_cast<std::size_t>(name.kind)) << name.number;
}

Call Call::Makes(HandleName handle) const {
  Call call = *this;
  call.made = handle;
  return call;
}

Call Call::Fails() const {
  Call call = *this;
  call.ending = Ending::Failed;
  call.made = kNoHandle;
  return call;
}

Call Call::Throws() const {
  Call call = *this;
  call.ending = Ending::Threw;
  call.made = kNoHandle;
  return call;
}

void PrintTo(const Call& call, std::ostream* out) {
  static constexpr std::array kEndings{"", " failed", " threw"};
  *out << call.name << '(';
  const char* separator = "";
  for (const Call::Argument& argument : call.arguments) {
    *out << std::exchange(separator, ", ");
    std::visit(ArgumentPrinter{*out}, argument);
  }
  *out << ')' << kEndings.at(static_cast<std::size_t>(call.ending));
  if (call.made != kNoHandle) {
    *out << " = ";
    PrintTo(call.made, out);
  }
}

CallJournal::Entries CallJournal::Last(std::size_t count) const {
  return {calls_.end() - static_cast<std::ptrdiff_t>(std::min(count, calls_.size())), calls_.end()};
}

CallJournal::Entries CallJournal::Named(std::initializer_list<std::string_view> names) const {
  Entries found;
  for (const Call& call : calls_) {
    if (std::find(names.begin(), names.end(), call.name) != names.end()) found.push_back(call);
  }
  return found;
}

CallJournal::Entries Joined(std::initializer_list<CallJournal::Entries> parts) {
  CallJournal::Entries joined;
  for (const CallJournal::Entries& part : parts) {
    joined.insert(joined.end(), part.begin(), part.end());
  }
  return joined;
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
