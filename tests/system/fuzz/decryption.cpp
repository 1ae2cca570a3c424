// Decryption with every hash, cipher and provider: a decrypted text encrypts to the same bytes, and
// the component's own Decrypt agrees.
#include <algorithm>

#include "latchkey.h"
#include "latchkey/cls_crypto_api.h"
#include "tests/system/fuzz/input.h"

using latchkey::ByteArray;
using latchkey::clsCryptoAPI;
using latchkey::fuzz::Input;
using latchkey::fuzz::Require;

namespace {

// Compares with clsCryptoAPI, which accepts no password of fewer than two elements and loses spaces
// at the end of password and data.
void RequireSameDecision(const latchkey_key& key, std::span<const std::uint8_t> ciphertext,
                         bool decrypts) {
  const std::span password(key.password, key.password_length);
  const auto endsInSpace = [](auto bytes) { return !bytes.empty() && bytes.back() == ' '; };
  if (password.empty() || endsInSpace(password) || endsInSpace(ciphertext)) return;
  clsCryptoAPI api;
  api.EnhancedProvider((key.flags & LATCHKEY_ENHANCED) != 0);
  ByteArray array = ByteArray::WithTrailingZero(password);
  api.Password(array);
  api.InputData(ByteArray::WithTrailingZero(ciphertext));
  Require(api.Decrypt(static_cast<std::int16_t>(key.hash), static_cast<std::int16_t>(key.cipher)) ==
          decrypts);
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static latchkey_thread* thread = nullptr;
  static latchkey_crypto* crypto = nullptr;
  if (crypto == nullptr) {
    Require(latchkey_thread_open(&thread) == LATCHKEY_OK);
    Require(latchkey_crypto_open(&crypto) == LATCHKEY_OK);
  }
  Input input(data, size);
  const auto choice = input.Take<std::uint8_t>();
  latchkey_key key{};
  key.flags = choice & LATCHKEY_ENHANCED;
  key.hash = choice / 2 % 6;
  key.cipher = choice / 12 % 7;
  if (key.cipher == LATCHKEY_RC2) key.rc2_effective_bits = input.Take<std::uint8_t>() % 2 * 40;
  const auto password = input.TakePiece();
  key.password = password.data();
  key.password_length = password.size();
  const auto ciphertext = input.TakeRest();

  std::vector<std::uint8_t> plaintext(ciphertext.size() + 1);
  std::size_t length = plaintext.size();
  const int status = latchkey_decrypt(crypto, &key, ciphertext.data(), ciphertext.size(),
                                      plaintext.data(), &length);
  if (key.rc2_effective_bits == 0) RequireSameDecision(key, ciphertext, status == LATCHKEY_OK);
  if (status != LATCHKEY_OK) return 0;

  Require(length <= ciphertext.size());
  std::vector<std::uint8_t> again(ciphertext.size() + 1);
  std::size_t againLength = again.size();
  Require(latchkey_encrypt(crypto, &key, plaintext.data(), length, again.data(), &againLength) ==
          LATCHKEY_OK);
  again.resize(againLength);
  Require(std::equal(again.begin(), again.end(), ciphertext.begin(), ciphertext.end()));
  return 0;
}
