// Makes a text of known length piece by piece.
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

// Characters converted at a time, on the stack; they fit in the first-level cache.
inline constexpr std::size_t kPieceLength = 2048;

// Makes `text` of `length` characters. write(from, piece) must fill all of `piece` with the
// characters from position `from` on; it is called in order, for an even number of characters
// except at the end. Writes the text's memory once, without first filling it with zeros. If `write`
// throws, wipes what was written and leaves `text` unchanged.
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
