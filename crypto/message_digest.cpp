#include "crypto/message_digest.h"

#include "diagnostics/checked_arithmetic.h"

namespace latchkey {

bool MessageDigest::Begin(const UniqueContext& context, platform::AlgorithmId algorithm) {
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
  return provider->CryptGetHashParam(handle, platform::kHashValueParameter, digest.data(), &length,
                                     0);
}

}  // namespace latchkey
