// The capacity rule of the texts that conversions build.
#pragma once

#include <cstddef>
#include <cstdint>

namespace latchkey {

// The rule: a working text of 90,000 spaces is filled from position 1 in pieces of one length.
// Before a piece is written at a position, the capacity grows by 10,000 if position + piece length
// is not below it. Positions and capacities are signed 32-bit integers, and every addition is
// checked. Raises Overflow when writing `pieces` pieces of `pieceLength` characters from position 1
// overflows a position or the capacity. Exact for pieces of up to 10,000 characters.
//
// No such text is allocated: apart from this fault, its only visible effect is that trailing spaces
// are lost.
void CheckTextCapacity(std::size_t pieces, std::int32_t pieceLength);

}  // namespace latchkey
