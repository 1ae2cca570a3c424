// Owners of the provider's handles. Each handle travels with the provider that made it.
#pragma once

#include "platform/crypto_provider.h"
#include "platform/unique_handle.h"

namespace latchkey {

// A handle together with what can close it; a handle of 0 is none.
template <class Handle>
struct ProvidedHandle {
  platform::CryptoProvider* provider = nullptr;
  Handle value = 0;

  friend bool operator==(const ProvidedHandle&, const ProvidedHandle&) = default;
};

struct ContextTrait {
  using Type = ProvidedHandle<platform::HCRYPTPROV>;
  static Type None() noexcept { return {}; }
  static void Close(const Type& context) {
    context.provider->CryptReleaseContext(context.value, 0);
  }
};

// Hash and key handles are one number type, so each needs a trait of its own.
struct HashTrait {
  using Type = ProvidedHandle<platform::HCRYPTHASH>;
  static Type None() noexcept { return {}; }
  static void Close(const Type& hash) { hash.provider->CryptDestroyHash(hash.value); }
};

struct KeyTrait {
  using Type = ProvidedHandle<platform::HCRYPTKEY>;
  static Type None() noexcept { return {}; }
  static void Close(const Type& key) { key.provider->CryptDestroyKey(key.value); }
};

using UniqueContext = platform::UniqueHandle<ContextTrait>;
using UniqueHash = platform::UniqueHandle<HashTrait>;
using UniqueKey = platform::UniqueHandle<KeyTrait>;

// An empty hash object of the context's provider; no handle when the provider refuses.
[[nodiscard]] inline UniqueHash MakeHash(const UniqueContext& context,
                                         platform::AlgorithmId algorithm) {
  HashTrait::Type hash{context.Get().provider};
  const bool made =
      hash.provider->CryptCreateHash(context.Get().value, algorithm, 0, 0, &hash.value);
  return made ? UniqueHash(hash) : UniqueHash();
}

}  // namespace latchkey
