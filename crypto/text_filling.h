// Text of a known length that is made piece by piece.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <span>
#include <utility>

#include "base/secure_memory.h"
#include "latchkey/types.h"
#include "platform/large_memory.h"

namespace latchkey {

// Elements of a StackBuffer, few enough for the first-level cache.
inline constexpr std::size_t kPieceLength = 2048;

// A buffer for a part of a text or its codes. The destructor wipes the elements that were used.
template <class Element>
class StackBuffer {
 public:
  StackBuffer() noexcept {}  // NOLINT(modernize-use-equals-default): elements stay as they are
  StackBuffer(const StackBuffer&) = delete;
  StackBuffer& operator=(const StackBuffer&) = delete;
  ~StackBuffer() { SecureWipe(elements_.data(), used_ * sizeof(Element)); }

  // `length` elements, for new ones.
  [[nodiscard]] std::span<Element> First(std::size_t length) noexcept {
    used_ = std::max(used_, length);
    return std::span(elements_).first(length);
  }

 private:
  std::array<Element, kPieceLength> elements_;
  std::size_t used_ = 0;
};

// Makes `text` of `length` characters: write(from, piece) writes those from the position `from` on
// into all of `piece`, from the first to the last, an even number at a time but for the end. The
// text's memory is written once; zeros in a new text, to be overwritten, would be written too. When
// `write` throws, what it wrote is wiped and `text` is as it was.
template <class Write>
void FillText(Text& text, std::size_t length, Write&& write) {
  static_assert(kPieceLength % 2 == 0);
  StackBuffer<char16_t> characters;
  Text filled;
  const WipeAtExit wipe(filled);
  filled.reserve(length);
  platform::ExpectFilling(filled.data(), length * sizeof(char16_t));
  while (filled.size() < length) {
    const auto piece = characters.First(std::min(kPieceLength, length - filled.size()));
    write(filled.size(), piece);
    filled.append(piece.data(), piece.size());
  }
  text = std::move(filled);
}

}  // namespace latchkey
