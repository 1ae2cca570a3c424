#include "diagnostics/connectivity_probe.h"

#include "base/checked_arithmetic.h"
#include "diagnostics/error_trap.h"
#include "diagnostics/thread_state.h"

namespace latchkey {

bool QueryConnectionState(std::int16_t* flags) {
  bool connected = false;
  *flags = 0;
  const bool completed = RunTrapped(trap::kConnectionState, [&] {
    std::uint32_t systemFlags = 0;
    connected = ThisThread().services.connectivity->InternetGetConnectedState(&systemFlags, 0);
    *flags = NarrowTo<std::int16_t>(static_cast<std::int32_t>(systemFlags));
  });
  return completed && connected;
}

bool QueryConnectionExists() {
  bool connected = false;
  RunTrapped(trap::kConnectionExists, [&] {
    std::int16_t flags = 0;
    connected = QueryConnectionState(&flags);
  });
  return connected;
}

}  // namespace latchkey
