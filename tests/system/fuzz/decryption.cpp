// Decryption with every hash, cipher and provider: a decrypted text encrypts to the same bytes, and
// the component's own Decrypt agrees.
#include <algorithm>

#include "crypto/engine/derived_key.h"
#include "latchkey/cls_crypto_api.h"
#include "latchkey/cls_main.h"
#include "tests/system/fuzz/input.h"

using latchkey::ByteArray;
using latchkey::CipherDirection;
using latchkey::clsCryptoAPI;
using latchkey::DerivedKey;
using latchkey::KeySettings;
using latchkey::ProviderChoice;
using latchkey::fuzz::Input;
using latchkey::fuzz::Require;

namespace {

using Bytes = std::vector<std::uint8_t>;

// Compares with clsCryptoAPI, which accepts no password of fewer than two elements and loses spaces
// at the end of password and data.
void RequireSameDecision(const KeySettings& settings, std::span<const std::uint8_t> password,
                         std::span<const std::uint8_t> ciphertext, bool decrypts) {
  const auto endsInSpace = [](auto bytes) { return !bytes.empty() && bytes.back() == ' '; };
  if (password.empty() || endsInSpace(password) || endsInSpace(ciphertext)) return;
  clsCryptoAPI api;
  api.EnhancedProvider(settings.UsesEnhancedProvider());
  ByteArray array = ByteArray::WithTrailingZero(password);
  api.Password(array);
  api.InputData(ByteArray::WithTrailingZero(ciphertext));
  Require(api.Decrypt(static_cast<std::int16_t>(settings.hash),
                      static_cast<std::int16_t>(settings.cipher)) == decrypts);
}

// The result of a message, or nothing.
bool Transform(const DerivedKey& key, CipherDirection direction, Bytes& message) {
  auto length = static_cast<std::uint32_t>(message.size());
  message.resize(message.size() + key.MostAdded());
  const bool done = key.Transform(direction, message, length);
  message.resize(done ? length : 0);
  return done;
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const latchkey::clsMain main;
  Input input(data, size);
  const auto choice = input.Take<std::uint8_t>();
  KeySettings settings;
  settings.provider = choice % 2 == 0 ? ProviderChoice::Base : ProviderChoice::Enhanced;
  settings.hash = choice / 2 % 6;
  settings.cipher = choice / 12 % 7;
  if (settings.cipher == 2) settings.rc2EffectiveBits = input.Take<std::uint8_t>() % 2 * 40;
  const auto password = input.TakePiece();
  const auto ciphertext = input.TakeRest();

  DerivedKey key;
  const bool hasKey = key.Derive(settings, password) == nullptr;
  Bytes plaintext(ciphertext.begin(), ciphertext.end());
  const bool decrypts = hasKey && Transform(key, CipherDirection::Decrypt, plaintext);
  if (settings.rc2EffectiveBits == 0) {
    RequireSameDecision(settings, password, ciphertext, decrypts);
  }
  if (!decrypts) return 0;

  Require(plaintext.size() <= ciphertext.size());
  Require(Transform(key, CipherDirection::Encrypt, plaintext));
  Require(std::equal(plaintext.begin(), plaintext.end(), ciphertext.begin(), ciphertext.end()));
  return 0;
}
