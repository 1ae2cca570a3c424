// The fault that a call raises.
#pragma once

#include <cstdint>

#include "latchkey/fault.h"

namespace latchkey::test {

inline constexpr std::int32_t kNoFault = 0;

// The number of the fault that `call` raises; kNoFault if it returns. Other exceptions reach the
// caller.
template <class Call>
[[nodiscard]] std::int32_t FaultOf(Call&& call) {
  try {
    static_cast<void>(call());
  } catch (const Fault& fault) {
    return fault.Number();
  }
  return kNoFault;
}

}  // namespace latchkey::test
