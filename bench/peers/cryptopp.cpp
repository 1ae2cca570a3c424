#define CRYPTOPP_ENABLE_NAMESPACE_WEAK \
  1  // the library asks for it where RC4, MD2, MD4, MD5 are used
#include <crypto++/arc4.h>
#include <crypto++/cryptlib.h>
#include <crypto++/des.h>
#include <crypto++/md2.h>
#include <crypto++/md4.h>
#include <crypto++/md5.h>
#include <crypto++/modes.h>
#include <crypto++/rc2.h>
#include <crypto++/sha.h>

#include <memory>

#include "bench/peer.h"

namespace latchkey::bench {
namespace {

namespace cp = CryptoPP;

Workload WorkOf(std::shared_ptr<cp::SymmetricCipher> cipher, CipherId id) {
  const auto bits = static_cast<int>(8 * KeySize(id));  // RC2 takes 1024 where none are named
  const cp::ConstByteArrayParameter feedback(kFeedback.data(), kFeedback.size());
  cipher->SetKey(
      kKey.data(), KeySize(id),
      cp::MakeParameters("EffectiveKeyLength", bits, false)(cp::Name::IV(), feedback, false));
  return [cipher](std::span<std::uint8_t> data) {
    cipher->ProcessData(data.data(), data.data(), data.size());
  };
}

template <class Block>
Workload CbcWork(CipherId id, Direction direction) {
  if (direction == Direction::Encrypt) {
    return WorkOf(std::make_shared<typename cp::CBC_Mode<Block>::Encryption>(), id);
  }
  return WorkOf(std::make_shared<typename cp::CBC_Mode<Block>::Decryption>(), id);
}

Workload CipherWork(CipherId id, Direction direction) {
  switch (id) {
    case CipherId::Rc4:
      return WorkOf(std::make_shared<cp::Weak::ARC4>(), id);
    case CipherId::Rc2:
      return CbcWork<cp::RC2>(id, direction);
    case CipherId::Des:
      return CbcWork<cp::DES>(id, direction);
    case CipherId::TripleDes:
      return CbcWork<cp::DES_EDE3>(id, direction);
  }
  return {};
}

template <class Hash>
Workload WorkOfHash() {
  return [](std::span<std::uint8_t> data) {
    Hash hash;
    hash.CalculateDigest(data.data(), data.data(), data.size());
  };
}

Workload HashWork(HashId id) {
  switch (id) {
    case HashId::Md2:
      return WorkOfHash<cp::Weak::MD2>();
    case HashId::Md4:
      return WorkOfHash<cp::Weak::MD4>();
    case HashId::Md5:
      return WorkOfHash<cp::Weak::MD5>();
    case HashId::Sha1:
      return WorkOfHash<cp::SHA1>();
  }
  return {};
}

}  // namespace

Peer CryptoppPeer() { return {"cryptopp", std::to_string(CRYPTOPP_VERSION), CipherWork, HashWork}; }

}  // namespace latchkey::bench
