// The per-thread state of the cryptographic service. Not shared between threads, so never locked.
#pragma once

#include <array>
#include <cstdint>
#include <memory>

#include "diagnostics/thread_state.h"
#include "provider/crypto_provider.h"

namespace latchkey {

struct CryptoState : ThreadPart {
  // The provider that this thread's operations call.
  provider::CryptoProvider* provider = &provider::SystemCryptoProvider();

  // State of the pseudo-random generator for salt letters.
  std::array<std::uint64_t, 2> generatorState{};

  // The sums of CountWindows.
  double windowCount = 0;
  double windowHandleSum = 0;

  // Byte counts of the last drive that was queried.
  double lastDriveTotal = 0;
  double lastDriveFree = 0;
  double lastDriveUsed = 0;
};

// The calling thread's state, made on first use.
inline CryptoState& ThisThreadCrypto() {
  auto& part = ThisThread().part;
  if (!part) part = std::make_unique<CryptoState>();
  return static_cast<CryptoState&>(*part);
}

}  // namespace latchkey
