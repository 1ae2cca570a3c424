// Owners of the provider's handles. Each handle travels with the provider that made it.
#pragma once

#include <utility>
#include "provider/crypto_provider.h"

#include "base/unique_handle.h"
#include "platform/stack_wipe.h"

namespace latchkey {

// A handle together with what can close it; a handle of 0 is none.
template <class Handle>
struct ProvidedHandle {
  provider::CryptoProvider* provider = nullptr;
  Handle value = 0;

  friend bool operator==(const ProvidedHandle&, const ProvidedHandle&) = default;
};

// Closes a handle during clean-up, where a fault must not stop what follows. What raising the fault
// left on the stack is wiped.
template <class Body>
void CleanUp(Body&& body) noexcept {
  try {
    std::forward<Body>(body)();
    return;
  } catch (...) {  // NOLINT(bugprone-empty-catch): see above
  }
  platform::WipeStackFarBelow();
}

struct ContextTrait {
  using Type = ProvidedHandle<provider::HCRYPTPROV>;
  static Type None() noexcept { return {}; }
  static void Close(const Type& context) noexcept {
    CleanUp([&] { context.provider->CryptReleaseContext(context.value, 0); });
  }
};

// Hash and key handles are one number type, so each needs a trait of its own.
struct HashTrait {
  using Type = ProvidedHandle<provider::HCRYPTHASH>;
  static Type None() noexcept { return {}; }
  static void Close(const Type& hash) noexcept {
    CleanUp([&] { hash.provider->CryptDestroyHash(hash.value); });
  }
};

struct KeyTrait {
  using Type = ProvidedHandle<provider::HCRYPTKEY>;
  static Type None() noexcept { return {}; }
  static void Close(const Type& key) noexcept {
    CleanUp([&] { key.provider->CryptDestroyKey(key.value); });
  }
};

using UniqueContext = UniqueHandle<ContextTrait>;
using UniqueHash = UniqueHandle<HashTrait>;
using UniqueKey = UniqueHandle<KeyTrait>;

// An empty hash object of the context's provider; no handle when the provider refuses.
[[nodiscard]] inline UniqueHash MakeHash(const UniqueContext& context,
                                         provider::AlgorithmId algorithm) {
  HashTrait::Type hash{context.Get().provider};
  const bool made =
      hash.provider->CryptCreateHash(context.Get().value, algorithm, 0, 0, &hash.value);
  return made ? UniqueHash(hash) : UniqueHash();
}

}  // namespace latchkey
