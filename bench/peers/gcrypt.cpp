#include <gcrypt.h>

#include <memory>

#include "bench/peer.h"

namespace latchkey::bench {
namespace {

Workload CipherWork(CipherId id, Direction direction) {
  constexpr int kIds[] = {GCRY_CIPHER_ARCFOUR, GCRY_CIPHER_RFC2268_128, GCRY_CIPHER_DES,
                          GCRY_CIPHER_3DES};
  const int mode = id == CipherId::Rc4 ? GCRY_CIPHER_MODE_STREAM : GCRY_CIPHER_MODE_CBC;
  gcry_cipher_hd_t handle = nullptr;
  if (gcry_cipher_open(&handle, kIds[static_cast<int>(id)], mode, 0) != 0) return {};
  const std::shared_ptr<gcry_cipher_handle> cipher(handle, gcry_cipher_close);
  Require(gcry_cipher_setkey(handle, kKey.data(), KeySize(id)) == 0, "libgcrypt refuses the key");
  const auto work = direction == Direction::Encrypt ? gcry_cipher_encrypt : gcry_cipher_decrypt;
  return [cipher, work](std::span<std::uint8_t> data) {
    Require(work(cipher.get(), data.data(), data.size(), nullptr, 0) == 0,
            "libgcrypt refuses the data");
  };
}

Workload HashWork(HashId id) {
  constexpr int kIds[] = {GCRY_MD_MD2, GCRY_MD_MD4, GCRY_MD_MD5, GCRY_MD_SHA1};
  const int hash = kIds[static_cast<int>(id)];
  if (gcry_md_test_algo(hash) != 0) return {};
  return [hash](std::span<std::uint8_t> data) {
    gcry_md_hash_buffer(hash, data.data(), data.data(), data.size());
  };
}

}  // namespace

Peer GcryptPeer() {
  const char* const version = gcry_check_version(nullptr);
  gcry_control(GCRYCTL_INITIALIZATION_FINISHED, 0);
  return {"libgcrypt", version, CipherWork, HashWork};
}

}  // namespace latchkey::bench
