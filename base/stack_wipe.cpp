#include "base/stack_wipe.h"

#include <array>
#include <cstddef>
#include <cstdint>

#include "base/secure_memory.h"

namespace latchkey {
namespace {

template <std::size_t size>
void WipeFrame() noexcept {
  // Uninitialized, to wipe the old contents.
  std::array<std::uint8_t, size> below;  // NOLINT(cppcoreguidelines-pro-type-member-init)
  SecureWipe(below.data(), below.size());
}

}  // namespace

void WipeStackBelow() noexcept { WipeFrame<4096>(); }

void WipeStackBelowBatches() noexcept { WipeFrame<8192>(); }

void WipeStackFarBelow() noexcept { WipeFrame<16384>(); }

}  // namespace latchkey
