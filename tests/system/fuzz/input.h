// A reader of the fuzzer's bytes.
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <span>
#include <vector>

#include "latchkey/types.h"

namespace latchkey::fuzz {

// Returns values from the front; missing bytes at the end are zero.
class Input {
 public:
  Input(const std::uint8_t* data, std::size_t size) : rest_(data, size) {}

  [[nodiscard]] bool IsEmpty() const noexcept { return rest_.empty(); }

  template <class Number>
  Number Take() {
    Number number{};
    const auto bytes = TakeSpan(sizeof number);
    if (!bytes.empty()) std::memcpy(&number, bytes.data(), bytes.size());
    return number;
  }

  // Up to `most` bytes.
  std::span<const std::uint8_t> TakeSpan(std::size_t most) {
    const auto taken = rest_.first(std::min(most, rest_.size()));
    rest_ = rest_.subspan(taken.size());
    return taken;
  }

  // Bytes whose number the input itself gives.
  std::span<const std::uint8_t> TakePiece() { return TakeSpan(Take<std::uint8_t>()); }

  std::span<const std::uint8_t> TakeRest() { return TakeSpan(rest_.size()); }

  // The rest as characters: each of two bytes, or each of one.
  Text TakeText() {
    if ((Take<std::uint8_t>() & 1U) == 0) return {rest_.begin(), rest_.end()};
    Text text(rest_.size() / sizeof(char16_t), u'\0');
    if (!text.empty()) std::memcpy(text.data(), rest_.data(), text.size() * sizeof(char16_t));
    return text;
  }

 private:
  std::span<const std::uint8_t> rest_;
};

// Ends the process, which a fuzzer records as a finding.
inline void Require(bool condition) {
  if (!condition) std::abort();
}

}  // namespace latchkey::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);
