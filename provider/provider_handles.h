// Owners of the provider's handles. Each handle is stored with the provider that made it.
#pragma once

#include <utility>

#include "base/stack_wipe.h"
#include "base/unique_handle.h"
#include "provider/crypto_provider.h"

namespace latchkey {

// A handle, and the provider that can close it; a handle of 0 is none.
template <class Handle>
struct ProvidedHandle {
  provider::CryptoProvider* provider = nullptr;
  Handle value = 0;

  friend bool operator==(const ProvidedHandle&, const ProvidedHandle&) = default;
};

// Closes a handle during clean-up, where a fault must not stop the remaining steps. Wipes the part
// of the stack where raising the fault left data.
template <class Body>
void CleanUp(Body&& body) noexcept {
  try {
    std::forward<Body>(body)();
    return;
  } catch (...) {  // NOLINT(bugprone-empty-catch): see above
  }
  WipeStackFarBelow();
}

struct ContextTrait {
  using Type = ProvidedHandle<provider::HCRYPTPROV>;
  static Type None() noexcept { return {}; }
  static void Close(const Type& context) noexcept {
    CleanUp([&] { context.provider->CryptReleaseContext(context.value, 0); });
  }
};

// Hash and key handles are the same type, so each needs a separate trait.
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

// Owns the handle that `call(address)` writes, or no handle if the provider refuses. UniqueHandle's
// Put does not fit here: the handle includes the provider, and a refused call may have written a
// handle.
template <class Trait, class Call>
[[nodiscard]] UniqueHandle<Trait> Receive(provider::CryptoProvider& provider, Call&& call) {
  typename Trait::Type handle{&provider};
  const bool given = std::forward<Call>(call)(&handle.value);
  return given ? UniqueHandle<Trait>(handle) : UniqueHandle<Trait>();
}

// An empty hash object of the context's provider; no handle if the provider refuses.
[[nodiscard]] inline UniqueHash MakeHash(const UniqueContext& context,
                                         provider::AlgorithmId algorithm) {
  provider::CryptoProvider& provider = *context.Get().provider;
  return Receive<HashTrait>(provider, [&](provider::HCRYPTHASH* hash) {
    return provider.CryptCreateHash(context.Get().value, algorithm, 0, 0, hash);
  });
}

}  // namespace latchkey
