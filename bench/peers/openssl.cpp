#include <openssl/crypto.h>
#include <openssl/evp.h>
#include <openssl/provider.h>

#include <memory>

#include "bench/peer.h"

namespace latchkey::bench {
namespace {

Workload CipherWork(CipherId id, Direction direction) {
  constexpr const char* kNames[] = {"RC4", "RC2-CBC", "DES-CBC", "DES-EDE3-CBC"};
  EVP_CIPHER* const cipher = EVP_CIPHER_fetch(nullptr, kNames[static_cast<int>(id)], nullptr);
  if (cipher == nullptr) return {};
  const std::shared_ptr<EVP_CIPHER_CTX> context(EVP_CIPHER_CTX_new(), EVP_CIPHER_CTX_free);
  const int encrypts = direction == Direction::Encrypt ? 1 : 0;
  Require(EVP_CipherInit_ex2(context.get(), cipher, kKey.data(), kFeedback.data(), encrypts,
                             nullptr) == 1,
          "OpenSSL refuses the key");
  EVP_CIPHER_free(cipher);
  EVP_CIPHER_CTX_set_padding(context.get(), 0);
  return [context](std::span<std::uint8_t> data) {
    int length = 0;
    const auto size = static_cast<int>(data.size());
    Require(EVP_CipherUpdate(context.get(), data.data(), &length, data.data(), size) == 1 &&
                length == size,
            "OpenSSL refuses the data");
  };
}

Workload HashWork(HashId id) {
  constexpr const char* kNames[] = {"MD2", "MD4", "MD5", "SHA1"};
  const std::shared_ptr<EVP_MD> hash(EVP_MD_fetch(nullptr, kNames[static_cast<int>(id)], nullptr),
                                     EVP_MD_free);
  if (!hash) return {};
  return [hash](std::span<std::uint8_t> data) {
    Require(EVP_Digest(data.data(), data.size(), data.data(), nullptr, hash.get(), nullptr) == 1,
            "OpenSSL refuses the data");
  };
}

}  // namespace

Peer OpensslPeer() {
  for (const char* const provider : {"default", "legacy"}) {
    Require(OSSL_PROVIDER_load(nullptr, provider) != nullptr, "OpenSSL lacks a provider");
  }
  return {"openssl", OpenSSL_version(OPENSSL_FULL_VERSION_STRING), CipherWork, HashWork};
}

}  // namespace latchkey::bench
