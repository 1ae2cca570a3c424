// Text of a known length that is made piece by piece.
#pragma once

#include <algorithm>
#include <cstddef>
#include <span>
#include <utility>

#include "base/secure_memory.h"
#include "base/wiped_buffer.h"
#include "latchkey/types.h"
#include "platform/large_memory.h"

namespace latchkey {

// Characters converted at a time, on the stack. Few enough for the first-level cache.
inline constexpr std::size_t kPieceLength = 2048;

// Makes `text` of `length` characters: write(from, piece) writes those from the position `from` on
// into all of `piece`, from the first to the last, an even number at a time but for the end. The
// text's memory is written once; zeros in a new text, to be overwritten, would be written too. When
// `write` throws, what it wrote is wiped and `text` is as it was.
template <class Write>
void FillText(Text& text, std::size_t length, Write&& write) {
  static_assert(kPieceLength % 2 == 0);
  WipedBuffer<char16_t, kPieceLength> characters(std::min(kPieceLength, length));
  Text filled;
  const WipeAtExit wipe(filled);
  filled.reserve(length);
  platform::ExpectFilling(filled.data(), length * sizeof(char16_t));
  while (filled.size() < length) {
    const auto piece = characters.All().first(std::min(kPieceLength, length - filled.size()));
    write(filled.size(), piece);
    filled.append(piece.data(), piece.size());
  }
  text = std::move(filled);
}

}  // namespace latchkey
