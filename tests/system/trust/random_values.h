// Arguments of every kind that a client may pass.
#pragma once

#include "latchkey/byte_array.h"
#include "latchkey/types.h"
#include "platform/variant_text.h"
#include "tests/support/bytes.h"
#include "tests/system/trust/random_source.h"

namespace latchkey::test {

// Mostly short, sometimes up to `most`.
[[nodiscard]] std::size_t RandomSize(RandomSource& random, std::size_t most);

[[nodiscard]] Bytes RandomBytes(RandomSource& random, std::size_t size);

// Up to `most` bytes, mostly followed by a zero element; sometimes of a shape that operations
// refuse: unallocated, of two dimensions, or with another lower bound.
[[nodiscard]] ByteArray RandomArray(RandomSource& random, std::size_t most);

// Up to `most` characters: of the 256 that code page 1252 has, ASCII with spaces at its ends, or
// any 16-bit codes.
[[nodiscard]] Text RandomText(RandomSource& random, std::size_t most);

// Pairs of hexadecimal digits in either case, at times of an odd length or with other characters.
[[nodiscard]] Text RandomHex(RandomSource& random, std::size_t most);

// Any kind of value; a text value refers to `text`.
[[nodiscard]] Variant RandomVariant(RandomSource& random, const Text& text);

}  // namespace latchkey::test
