// ASCII characters in standard C++. The loop over a step has no branch, so that the compiler can
// turn it into vector instructions.
#include "base/ascii_text.h"

namespace latchkey {
namespace {

constexpr std::size_t kStep = AsciiText::kStep;

template <class Code>
bool IsAscii(const Code* step) noexcept {
  Code bits = 0;
  for (std::size_t i = 0; i < kStep; ++i) bits = static_cast<Code>(bits | step[i]);
  return bits < 0x80;
}

template <class From, class To>
std::size_t Convert(const From* from, std::size_t count, To* to) noexcept {
  std::size_t done = 0;
  for (; count - done >= kStep && IsAscii(from + done); done += kStep) {
    for (std::size_t i = done; i < done + kStep; ++i) to[i] = static_cast<To>(from[i]);
  }
  return done;
}

}  // namespace

constinit const AsciiText kAsciiTextPortable{&Convert<char16_t, std::uint8_t>,
                                             &Convert<std::uint8_t, char16_t>};

}  // namespace latchkey
