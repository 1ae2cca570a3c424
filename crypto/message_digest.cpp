#include "crypto/message_digest.h"

#include "base/checked_arithmetic.h"

namespace latchkey {

bool MessageDigest::Begin(const UniqueContext& context, provider::AlgorithmId algorithm) {
  hash_ = MakeHash(context, algorithm);
  return static_cast<bool>(hash_);
}

bool MessageDigest::Add(std::span<const std::uint8_t> data) {
  const auto& [provider, handle] = hash_.Get();
  return provider->CryptHashData(handle, data.data(), NarrowTo<std::uint32_t>(data.size()), 0);
}

bool MessageDigest::Read(std::span<std::uint8_t> digest) {
  const auto& [provider, handle] = hash_.Get();
  auto length = NarrowTo<std::uint32_t>(digest.size());
  return provider->CryptGetHashParam(handle, provider::kHashValueParameter, digest.data(), &length,
                                     0);
}

}  // namespace latchkey
