// Opening the cryptographic provider.
#pragma once

#include "crypto/provider_handles.h"

namespace latchkey {

// The provider that the flag asks for, of the thread's platform. Without the flag it is the base
// provider or, where that cannot be opened without a key set, the default provider with a new one;
// with the flag the enhanced provider and no other. No handle when it cannot be opened.
[[nodiscard]] UniqueContext OpenProvider(bool enhanced);

}  // namespace latchkey
