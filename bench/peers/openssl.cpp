#include <openssl/crypto.h>
#include <openssl/evp.h>
#include <openssl/provider.h>

#include <memory>
#include <stdexcept>

#include "bench/peer.h"

namespace latchkey::bench {
namespace {

Work CipherWork(CipherId id, Direction direction) {
  constexpr const char* kNames[] = {"RC4", "RC2-CBC", "DES-CBC", "DES-EDE3-CBC"};
  EVP_CIPHER* const cipher = EVP_CIPHER_fetch(nullptr, kNames[static_cast<int>(id)], nullptr);
  if (cipher == nullptr) return {};
  const std::shared_ptr<EVP_CIPHER_CTX> context(EVP_CIPHER_CTX_new(), EVP_CIPHER_CTX_free);
  if (EVP_CipherInit_ex2(context.get(), cipher, kKey.data(), kFeedback.data(),
                         direction == Direction::Encrypt ? 1 : 0, nullptr) != 1) {
    throw std::runtime_error("OpenSSL refuses the key");
  }
  EVP_CIPHER_free(cipher);
  EVP_CIPHER_CTX_set_padding(context.get(), 0);
  return [context](std::span<std::uint8_t> data) {
    int length = 0;
    EVP_CipherUpdate(context.get(), data.data(), &length, data.data(),
                     static_cast<int>(data.size()));
  };
}

Work HashWork(HashId id) {
  constexpr const char* kNames[] = {"MD2", "MD4", "MD5", "SHA1"};
  const std::shared_ptr<EVP_MD> hash(EVP_MD_fetch(nullptr, kNames[static_cast<int>(id)], nullptr),
                                     EVP_MD_free);
  if (!hash) return {};
  return [hash](std::span<std::uint8_t> data) {
    std::uint8_t value[EVP_MAX_MD_SIZE];
    EVP_Digest(data.data(), data.size(), value, nullptr, hash.get(), nullptr);
  };
}

}  // namespace

Peer OpensslPeer() {
  OSSL_PROVIDER_load(nullptr, "default");
  OSSL_PROVIDER_load(nullptr, "legacy");
  return {"openssl", OpenSSL_version(OPENSSL_FULL_VERSION_STRING), CipherWork, HashWork};
}

}  // namespace latchkey::bench
