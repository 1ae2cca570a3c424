// What the cryptographic service keeps for each thread. Nothing here is shared between threads and
// nothing is locked.
#pragma once

#include <array>
#include <cstdint>

#include "diagnostics/thread_state.h"
#include "provider/crypto_provider.h"

namespace latchkey {

struct CryptoState : ThreadPart {
  // The provider that this thread's operations work against.
  provider::CryptoProvider* provider = &provider::SystemCryptoProvider();

  // State of the pseudo-random generator behind salt letters.
  std::array<std::uint64_t, 2> generatorState{};

  // Accumulators of the window walk.
  double windowCount = 0;
  double windowHandleSum = 0;

  // Byte counts that the last look at a drive found.
  double lastDriveTotal = 0;
  double lastDriveFree = 0;
  double lastDriveUsed = 0;
};

// The calling thread's state, made on first use.
CryptoState& ThisThreadCrypto();

}  // namespace latchkey
