// Late-bound calls of the component's members, and their expected results.
#pragma once

#include <span>
#include <vector>

#include "tests/system/trust/windows/random_shapes.h"

namespace latchkey::test {

// A member's reading of an argument.
enum class Takes { Array, Text, Integer, Long, Flag, FlagByReference, Any };

struct Member {
  const wchar_t* name;
  WORD kind;
  VARTYPE result;
  std::vector<Takes> arguments = {};
  std::size_t required = 0;
  DISPID id = DISPID_UNKNOWN;  // from the object
};

// All members of a class, in the order of their declaration; their numbers are the object's.
[[nodiscard]] std::vector<Member> MembersOfMain(const LateClient& object);
[[nodiscard]] std::vector<Member> MembersOfCryptoApi(const LateClient& object);
[[nodiscard]] std::vector<Member> MembersOfTimer(const LateClient& object);

// A call, valid or not.
struct LateCall {
  DISPID member = DISPID_UNKNOWN;
  WORD flags = 0;
  // Those by name, then those by position, the last of them first.
  std::vector<Shape> arguments = {};
  std::vector<DISPID> names = {};
  bool withoutList = false;
  bool withoutValues = false;
  bool withoutNames = false;
};

struct Ending {
  HRESULT result = S_OK;  // of an exception, its fault's
  VARTYPE type = VT_EMPTY;

  friend bool operator==(const Ending&, const Ending&) = default;
};

[[nodiscard]] Ending ExpectedEnding(std::span<const Member> members, const LateCall& call);

// Whether the call would request random data of a length that takes too long or too much memory.
[[nodiscard]] bool AsksForTooMuch(std::span<const Member> members, const LateCall& call);

// Draws calls of the members of one class: most of them valid, some with a wrong number, wrong
// flags, too many or too few arguments, names that do not exist, or an invalid list.
class CallMaker {
 public:
  CallMaker(RandomSource& random, std::span<const Member> members)
      : random_(random), members_(members) {}

  // `shapes` owns the values that the arguments refer to.
  [[nodiscard]] LateCall Make(ShapeMaker& shapes);

 private:
  [[nodiscard]] DISPID DrawWrongNumber();
  [[nodiscard]] WORD DrawFlags(WORD kind);
  [[nodiscard]] std::size_t DrawCount(const Member& member);
  void DrawNames(const Member& member, LateCall& call);

  RandomSource& random_;
  std::span<const Member> members_;
};

}  // namespace latchkey::test
