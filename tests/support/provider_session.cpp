#include "tests/support/provider_session.h"

#include <algorithm>
#include <stdexcept>
#include <string>
#include <utility>

namespace latchkey::test {
namespace {

provider::CryptoProvider& Provider() { return provider::SystemCryptoProvider(); }

void Require(bool succeeded) {
  if (!succeeded) {
    throw std::runtime_error("provider call failed: " + std::to_string(Provider().GetLastError()));
  }
}

std::uint32_t LengthOf(std::span<const std::uint8_t> bytes) {
  return static_cast<std::uint32_t>(bytes.size());
}

CipherResult ResultOf(bool succeeded, std::uint32_t length, Bytes data) {
  const std::uint32_t error = ErrorOf(succeeded);
  data.resize(error == 0 ? length : 0);
  return {error, length, std::move(data)};
}

}  // namespace

std::uint32_t ErrorOf(bool succeeded) { return succeeded ? 0 : Provider().GetLastError(); }

ProviderSession::ProviderSession(const char* providerName) {
  Require(Provider().CryptAcquireContextA(
      &handle_, "", providerName, provider::kProviderTypeRsaFull, provider::kVerifyContext));
}

ProviderSession::~ProviderSession() { Provider().CryptReleaseContext(handle_, 0); }

provider::HCRYPTHASH ProviderSession::HashOf(provider::AlgorithmId algorithm,
                                             std::span<const std::uint8_t> data) const {
  provider::HCRYPTHASH hash = 0;
  Require(Provider().CryptCreateHash(handle_, algorithm, 0, 0, &hash));
  Require(Provider().CryptHashData(hash, data.data(), LengthOf(data), 0));
  return hash;
}

provider::HCRYPTKEY ProviderSession::KeyOf(provider::AlgorithmId cipher, provider::AlgorithmId hash,
                                           std::span<const std::uint8_t> password) const {
  const provider::HCRYPTHASH passwordHash = HashOf(hash, password);
  provider::HCRYPTKEY key = 0;
  Require(Provider().CryptDeriveKey(handle_, cipher, passwordHash, 0, &key));
  Require(Provider().CryptDestroyHash(passwordHash));
  return key;
}

Bytes ValueOf(provider::HCRYPTHASH hash) {
  Bytes value(64);
  std::uint32_t length = LengthOf(value);
  Require(
      Provider().CryptGetHashParam(hash, provider::kHashValueParameter, value.data(), &length, 0));
  value.resize(length);
  return value;
}

CipherResult Encrypt(provider::HCRYPTKEY key, bool final, const Bytes& plaintext,
                     std::uint32_t room) {
  Bytes buffer = plaintext;
  buffer.resize(std::max<std::size_t>(plaintext.size(), room));
  std::uint32_t length = LengthOf(plaintext);
  const bool done = Provider().CryptEncrypt(key, 0, final, 0, buffer.data(), &length, room);
  return ResultOf(done, length, std::move(buffer));
}

CipherResult Decrypt(provider::HCRYPTKEY key, bool final, const Bytes& ciphertext) {
  Bytes buffer = ciphertext;
  std::uint32_t length = LengthOf(ciphertext);
  const bool done = Provider().CryptDecrypt(key, 0, final, 0, buffer.data(), &length);
  return ResultOf(done, length, std::move(buffer));
}

}  // namespace latchkey::test
