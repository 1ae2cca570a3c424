// Opening the cryptographic provider.
#pragma once

#include "provider/provider_handles.h"

namespace latchkey {

// Opens a provider of the thread's platform: the enhanced one if `enhanced` is set, otherwise the
// base provider or, if that cannot be opened without a key set, the default provider with a new key
// set. Returns no handle on failure.
[[nodiscard]] UniqueContext OpenProvider(bool enhanced);

// The same with the provider that threads share. Makes no per-thread state: threads need none to
// use keys of this provider.
[[nodiscard]] UniqueContext OpenSharedProvider(bool enhanced);

}  // namespace latchkey
