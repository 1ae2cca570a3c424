// The text that a conversion builds in place.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "base/working_bytes.h"

namespace latchkey {

// A working text of 90,000 spaces is filled from position 1 in pieces of one length. Before a
// piece is written at a position, the capacity grows by 10,000 if position + piece length is not
// below it. Positions and capacities are signed 32-bit integers, and every addition is checked.
//
// What can be seen of that is which texts overflow and that spaces at the end are lost. The
// storage itself is as large as the text, and wiped when the object ends. The text is kept as
// code-page bytes. The capacity rule is exact for pieces of up to 10,000 characters.
class WorkingText {
 public:
  static constexpr std::int32_t kInitialCapacity = 90'000;
  static constexpr std::int32_t kCapacityStep = 10'000;

  // Empty text.
  WorkingText() noexcept = default;

  // Room for `pieces` pieces of `pieceLength` characters each, to be filled through Codes().
  // Raises Overflow when writing them one after the other would.
  WorkingText(std::size_t pieces, std::int32_t pieceLength);

  [[nodiscard]] std::span<std::uint8_t> Codes() noexcept { return codes_.All(); }

  // The text without trailing spaces.
  [[nodiscard]] std::span<const std::uint8_t> Trimmed() const noexcept;

  // Raises Overflow when writing that many pieces from position 1 overflows a position or the
  // capacity.
  static void CheckCapacity(std::size_t pieces, std::int32_t pieceLength);

 private:
  WorkingBytes codes_;
};

}  // namespace latchkey
