#include "provider/portable/key_derivation.h"

#include <algorithm>

namespace latchkey::provider {
namespace {

// The shortest key, the only one with salt: zero bytes.
constexpr unsigned kShortKeyBits = 40;
constexpr std::size_t kShortKeySalt = 11;

// The hash of a 64-byte block filled with `filler`, with the value XORed into its beginning.
WipedBytes HashOfMaskedBlock(const nettle_hash& algorithm, const WipedBytes& value,
                             std::uint8_t filler) {
  WipedBytes block(64, filler);
  for (std::size_t i = 0; i < value.size(); ++i) block[i] ^= value[i];
  return HashOf(algorithm, block);
}

WipedBytes Expanded(const nettle_hash& algorithm, const WipedBytes& value) {
  const WipedBytes first = HashOfMaskedBlock(algorithm, value, 0x36);
  const WipedBytes second = HashOfMaskedBlock(algorithm, value, 0x5C);
  WipedBytes joined(first.size() + second.size());
  std::copy(second.begin(), second.end(), std::copy(first.begin(), first.end(), joined.begin()));
  return joined;
}

}  // namespace

std::optional<KeyForm> KeyFormOf(ProviderKind provider, AlgorithmId cipher) noexcept {
  const bool enhanced = provider == ProviderKind::Enhanced;
  switch (cipher) {
    case kAlgorithmRc4:
      return enhanced ? KeyForm{16, 16, 0} : KeyForm{5, 16, 0};
    case kAlgorithmRc2:
      return enhanced ? KeyForm{16, 16, 128} : KeyForm{5, 16, 40};
    case kAlgorithmDes:
      return KeyForm{8, 8, 0};
    case kAlgorithm3Des:
      return enhanced ? std::optional(KeyForm{24, 24, 0}) : std::nullopt;
    case kAlgorithm3Des112:
      return enhanced ? std::optional(KeyForm{16, 16, 0}) : std::nullopt;
    default:
      return std::nullopt;
  }
}

std::optional<KeyForm> KeyFormOf(ProviderKind provider, AlgorithmId cipher,
                                 unsigned bits) noexcept {
  const unsigned most = provider == ProviderKind::Enhanced ? 128 : 56;
  const bool hasLengths = cipher == kAlgorithmRc4 || cipher == kAlgorithmRc2;
  if (!hasLengths || bits < kShortKeyBits || bits > most || bits % 8 != 0) return std::nullopt;
  const std::size_t bytes = bits / 8;
  const std::size_t cipherBytes = bits == kShortKeyBits ? bytes + kShortKeySalt : bytes;
  return KeyForm{bytes, cipherBytes, cipher == kAlgorithmRc2 ? bits : 0};
}

bool AllowsEffectiveBits(ProviderKind provider, std::uint32_t bits) noexcept {
  return provider == ProviderKind::Base ? bits == 40 : bits >= 1 && bits <= 1024;
}

WipedBytes DeriveKey(HashObject& hash, const KeyForm& form) {
  const WipedBytes& value = hash.Value();
  const WipedBytes longer =
      value.size() < form.derivedBytes ? Expanded(hash.Algorithm(), value) : WipedBytes();
  const WipedBytes& source = longer.empty() ? value : longer;
  WipedBytes key(form.cipherBytes, 0);
  std::copy_n(source.begin(), form.derivedBytes, key.begin());
  return key;
}

}  // namespace latchkey::provider
