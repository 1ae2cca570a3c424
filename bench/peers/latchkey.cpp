#include <algorithm>
#include <memory>

#include "bench/peer.h"
#include "platform/linux/cipher.h"
#include "platform/linux/hash_object.h"

namespace latchkey::bench {
namespace {

platform::AlgorithmId AlgorithmOf(CipherId id) {
  constexpr platform::AlgorithmId kIds[] = {platform::kAlgorithmRc4, platform::kAlgorithmRc2,
                                            platform::kAlgorithmDes, platform::kAlgorithm3Des};
  return kIds[static_cast<int>(id)];
}

platform::AlgorithmId AlgorithmOf(HashId id) {
  constexpr platform::AlgorithmId kIds[] = {platform::kAlgorithmMd2, platform::kAlgorithmMd4,
                                            platform::kAlgorithmMd5, platform::kAlgorithmSha1};
  return kIds[static_cast<int>(id)];
}

Work CipherWork(CipherId id, Direction direction) {
  const platform::WipedBytes key(kKey.begin(), kKey.begin() + KeySize(id));
  const std::shared_ptr<platform::Cipher> cipher = platform::MakeCipher(AlgorithmOf(id), key, 128);
  if (direction == Direction::Encrypt) return [cipher](auto data) { cipher->Encrypt(data); };
  return [cipher](auto data) { cipher->Decrypt(data); };
}

Work HashWork(HashId id) {
  const nettle_hash& hash = *platform::HashAlgorithm(AlgorithmOf(id));
  return [&hash](auto data) { std::ranges::copy(platform::HashOf(hash, data), data.begin()); };
}

}  // namespace

Peer LatchkeyPeer() { return {"latchkey", "this build", CipherWork, HashWork}; }

}  // namespace latchkey::bench
