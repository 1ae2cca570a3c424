#include <algorithm>
#include <memory>

#include "bench/peer.h"
#include "provider/portable/cipher.h"
#include "provider/portable/hash_object.h"
#include "provider/portable/kernels/lane_kernels.h"

namespace latchkey::bench {
namespace {

provider::AlgorithmId AlgorithmOf(CipherId id) {
  constexpr provider::AlgorithmId kIds[] = {provider::kAlgorithmRc4, provider::kAlgorithmRc2,
                                            provider::kAlgorithmDes, provider::kAlgorithm3Des};
  return kIds[static_cast<int>(id)];
}

provider::AlgorithmId AlgorithmOf(HashId id) {
  constexpr provider::AlgorithmId kIds[] = {provider::kAlgorithmMd2, provider::kAlgorithmMd4,
                                            provider::kAlgorithmMd5, provider::kAlgorithmSha1};
  return kIds[static_cast<int>(id)];
}

Workload CipherWork(CipherId id, Direction direction) {
  const WipedBytes key(kKey.begin(), kKey.begin() + KeySize(id));
  const auto cipher = provider::MakeCipher(AlgorithmOf(id), key, 128);
  const auto state = std::make_shared<provider::CipherState>();
  state->batch = std::make_unique<std::uint8_t[]>(provider::kLargestBatch);
  cipher->Start(*state);
  if (direction == Direction::Encrypt) {
    return [cipher, state](auto data) { cipher->Encrypt(data, *state); };
  }
  return [cipher, state](auto data) { cipher->Decrypt(data, *state); };
}

Workload HashWork(HashId id) {
  const nettle_hash& hash = *provider::HashAlgorithm(AlgorithmOf(id));
  return [&hash](auto data) { std::ranges::copy(provider::HashOf(hash, data), data.begin()); };
}

}  // namespace

Peer LatchkeyPeer() { return {"latchkey", "this build", CipherWork, HashWork}; }

}  // namespace latchkey::bench
