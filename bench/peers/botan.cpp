#include <botan/cipher_mode.h>
#include <botan/hash.h>
#include <botan/stream_cipher.h>
#include <botan/version.h>

#include <memory>

#include "bench/peer.h"

namespace latchkey::bench {
namespace {

Workload Rc4Work() {
  const std::shared_ptr<Botan::StreamCipher> cipher = Botan::StreamCipher::create("RC4");
  if (!cipher) return {};
  cipher->set_key(kKey.data(), KeySize(CipherId::Rc4));
  return [cipher](std::span<std::uint8_t> data) { cipher->cipher1(data.data(), data.size()); };
}

Workload CipherWork(CipherId id, Direction direction) {
  if (id == CipherId::Rc4) return Rc4Work();
  constexpr const char* kNames[] = {"", "RC2/CBC/NoPadding", "DES/CBC/NoPadding",
                                    "TripleDES/CBC/NoPadding"};
  const auto botanDirection =
      direction == Direction::Encrypt ? Botan::ENCRYPTION : Botan::DECRYPTION;
  const std::shared_ptr<Botan::Cipher_Mode> mode =
      Botan::Cipher_Mode::create(kNames[static_cast<int>(id)], botanDirection);
  if (!mode) return {};
  mode->set_key(kKey.data(), KeySize(id));
  mode->start(kFeedback.data(), kFeedback.size());
  return [mode](std::span<std::uint8_t> data) {
    Require(mode->process(data.data(), data.size()) == data.size(), "Botan refuses the data");
  };
}

Workload HashWork(HashId id) {
  constexpr const char* kNames[] = {"MD2", "MD4", "MD5", "SHA-1"};
  const std::shared_ptr<Botan::HashFunction> hash =
      Botan::HashFunction::create(kNames[static_cast<int>(id)]);
  if (!hash) return {};
  return [hash](std::span<std::uint8_t> data) {
    hash->update(data.data(), data.size());
    hash->final(data.data());
  };
}

}  // namespace

Peer BotanPeer() { return {"botan", Botan::short_version_string(), CipherWork, HashWork}; }

}  // namespace latchkey::bench
