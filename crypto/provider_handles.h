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

// Owns the handle that `call(address)` writes; no handle when the provider refuses. UniqueHandle's
// Put does not do: the provider is part of the handle, and a refused call may have written one.
template <class Trait, class Call>
[[nodiscard]] UniqueHandle<Trait> Receive(provider::CryptoProvider& provider, Call&& call) {
  typename Trait::Type handle{&provider};
  const bool given = std::forward<Call>(call)(&handle.value);
  return given ? UniqueHandle<Trait>(handle) : UniqueHandle<Trait>();
}

// An empty hash object of the context's provider; no handle when the provider refuses.
[[nodiscard]] inline UniqueHash MakeHash(const UniqueContext& context,
                                         provider::AlgorithmId algorithm) {
  provider::CryptoProvider& provider = *context.Get().provider;
  return Receive<HashTrait>(provider, [&](provider::HCRYPTHASH* hash) {
    return provider.CryptCreateHash(context.Get().value, algorithm, 0, 0, hash);
  });
}

}  // namespace latchkey
