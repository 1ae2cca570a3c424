// The calls made during a test, in order.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <ostream>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <variant>
#include <vector>

#include "latchkey/types.h"
#include "tests/support/bytes.h"

namespace latchkey::test {

// A handle of the scripted provider: its kind, and its number within the kind, from 1.
struct HandleName {
  enum class Kind { None, Context, Hash, Key };

  Kind kind = Kind::None;
  int number = 0;

  friend bool operator==(const HandleName&, const HandleName&) = default;
  friend void PrintTo(const HandleName& name, std::ostream* out);
};

inline constexpr HandleName kNoHandle{};
constexpr HandleName ContextNo(int number) { return {HandleName::Kind::Context, number}; }
constexpr HandleName HashNo(int number) { return {HandleName::Kind::Hash, number}; }
constexpr HandleName KeyNo(int number) { return {HandleName::Kind::Key, number}; }

// A call of a function of the provider or of a member of the record.
struct Call {
  using Argument = std::variant<bool, std::int64_t, std::string, HandleName, Bytes>;
  enum class Ending { Done, Failed, Threw };

  template <class... Values>
  // NOLINTNEXTLINE(google-explicit-constructor): an expected call is written as its name
  Call(const char* calledName, Values&&... values)
      : name(calledName), arguments{ToArgument(std::forward<Values>(values))...} {}

  // The same call with a different outcome: it made a handle, failed or threw.
  [[nodiscard]] Call Makes(HandleName handle) const;
  [[nodiscard]] Call Fails() const;
  [[nodiscard]] Call Throws() const;

  friend bool operator==(const Call&, const Call&) = default;
  // "CryptHashData(hash1, 616263, 3, 0) failed", bytes and large numbers in hexadecimal.
  friend void PrintTo(const Call& call, std::ostream* out);

  std::string name;
  std::vector<Argument> arguments;
  Ending ending = Ending::Done;
  HandleName made;

 private:
  template <class Value>
  static Argument ToArgument(Value&& value) {
    using Plain = std::remove_cvref_t<Value>;
    if constexpr (std::is_integral_v<Plain> && !std::is_same_v<Plain, bool>) {
      return std::int64_t{value};
    } else {
      return std::forward<Value>(value);
    }
  }
};

// The record spy and the scripted provider share one journal, so that tests can check the order of
// writes and provider calls.
class CallJournal {
 public:
  using Entries = std::vector<Call>;

  void Add(Call call) { calls_.push_back(std::move(call)); }
  void Clear() { calls_.clear(); }

  [[nodiscard]] const Entries& All() const { return calls_; }

  // The last `count` calls, fewer when there were fewer.
  [[nodiscard]] Entries Last(std::size_t count) const;

  // The calls of these names, in order.
  [[nodiscard]] Entries Named(std::initializer_list<std::string_view> names) const;

  // The number of calls of this name.
  [[nodiscard]] std::size_t Count(std::string_view name) const { return Named({name}).size(); }

 private:
  Entries calls_;
};

// The lists one after another.
[[nodiscard]] CallJournal::Entries Joined(std::initializer_list<CallJournal::Entries> parts);

// ASCII unchanged, every other character as \uXXXX.
[[nodiscard]] std::string Printable(TextView text);

}  // namespace latchkey::test
