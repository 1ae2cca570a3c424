#include "crypto/engine/derived_key.h"

#include <utility>

#include "base/checked_arithmetic.h"
#include "crypto/algorithms.h"
#include "crypto/cipher_buffer.h"
#include "crypto/open_provider.h"

namespace latchkey {
namespace {

constexpr std::int32_t kRc4 = 1;
constexpr std::uint32_t kMostBaseBits = 56;

// A number of the component; 0, which is not one, for a number that it cannot have.
std::int16_t ComponentNumber(std::int32_t number) noexcept {
  return std::in_range<std::int16_t>(number) ? static_cast<std::int16_t>(number) : std::int16_t{0};
}

provider::AlgorithmId CipherOf(const KeySettings& settings, bool enhanced) noexcept {
  return FindCipherAlgorithm(ComponentNumber(settings.cipher), enhanced);
}

}  // namespace

bool KeySettings::UsesEnhancedProvider() const noexcept {
  if (provider != ProviderChoice::Any) return provider == ProviderChoice::Enhanced;
  return rc2EffectiveBits != 0 || keyBits > kMostBaseBits ||
         CipherOf(*this, false) == provider::kAlgorithmNone;
}

bool KeySettings::HasBlockCipher() const noexcept { return cipher != kRc4; }

bool KeySettings::IsAllowed() const noexcept {
  return FindHashAlgorithm(ComponentNumber(hash)).id != provider::kAlgorithmNone &&
         CipherOf(*this, UsesEnhancedProvider()) != provider::kAlgorithmNone;
}

const CheckSite* DerivedKey::Derive(const KeySettings& settings,
                                    std::span<const std::uint8_t> password,
                                    const CipherSites& sites) {
  settings_ = settings;
  const bool enhanced = settings.UsesEnhancedProvider();
  const HashAlgorithm hash = FindHashAlgorithm(ComponentNumber(settings.hash));
  if (hash.id == provider::kAlgorithmNone) return &sites.hashType;
  const provider::AlgorithmId cipher = CipherOf(settings, enhanced);
  if (cipher == provider::kAlgorithmNone) return &sites.cipherType;
  context_ = OpenProvider(enhanced);
  if (!context_) return &sites.provider;
  const CipherStep step = key_.Derive(
      context_, {hash.id, cipher, password, settings.rc2EffectiveBits, settings.keyBits});
  if (step != CipherStep::Done) return &sites.SiteOf(step);
  messages_ = key_.MakeMessageKey();
  return messages_ ? nullptr : &sites.key;
}

bool DerivedKey::Transform(CipherDirection direction, std::span<std::uint8_t> buffer,
                           std::uint32_t& length) const {
  return direction == CipherDirection::Encrypt
             ? messages_->Encrypt(buffer.data(), &length, NarrowTo<std::uint32_t>(buffer.size()))
             : messages_->Decrypt(buffer.data(), &length);
}

std::size_t DerivedKey::EncryptedLength(std::size_t length) const noexcept {
  return settings_.HasBlockCipher() ? length - length % kLargestPadding + kLargestPadding : length;
}

std::size_t DerivedKey::MostAdded() const noexcept {
  return settings_.HasBlockCipher() ? kLargestPadding : 0;
}

PasswordKey DerivedKey::NewSession() const { return key_.NewSession(*messages_); }

}  // namespace latchkey
