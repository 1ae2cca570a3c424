// Makes the kernels' keys from the bytes of a key.
#pragma once

#include <nettle/arctwo.h>

#include <algorithm>

#include "provider/portable/kernels/lane_kernels.h"
#include "tests/support/bytes.h"

namespace latchkey::test {

[[nodiscard]] inline provider::des::KeySchedule DesKeyOf(const Bytes& key) {
  provider::des::KeySchedule schedule{};
  provider::des::ExpandKeys(key.data(), key.size() / 8, schedule);
  return schedule;
}

// All bits are effective.
[[nodiscard]] inline provider::Rc2Key Rc2KeyOf(const Bytes& key) {
  arctwo_ctx context{};
  arctwo_set_key_ekb(&context, key.size(), key.data(), static_cast<unsigned>(8 * key.size()));
  provider::Rc2Key result{};
  std::copy_n(context.S, result.words.size(), result.words.begin());
  return result;
}

}  // namespace latchkey::test
