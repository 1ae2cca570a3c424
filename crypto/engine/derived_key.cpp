#include "crypto/engine/derived_key.h"

#include <utility>

#include "base/checked_arithmetic.h"
#include "crypto/algorithms.h"
#include "crypto/cipher_buffer.h"
#include "crypto/open_provider.h"

namespace latchkey {
namespace {

constexpr std::uint32_t kMostBaseBits = 56;

// The number as the component stores it; 0, which names no algorithm, if it does not fit.
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

std::size_t KeySettings::MissingBytes(std::uint64_t length) const noexcept {
  return HasBlockCipher() ? BytesToWholeBlocks(length) : 0;
}

std::size_t BytesToWholeBlocks(std::uint64_t length) noexcept {
  const auto rest = static_cast<std::size_t>(length % provider::kBlockSize);
  return rest == 0 ? 0 : provider::kBlockSize - rest;
}

const CheckSite* DerivedKey::Open(const KeySettings& settings, const CipherSites& sites) {
  settings_ = settings;
  sites_ = &sites;
  const bool enhanced = settings.UsesEnhancedProvider();
  request_ = {FindHashAlgorithm(ComponentNumber(settings.hash)).id,
              CipherOf(settings, enhanced),
              {},
              settings.rc2EffectiveBits,
              settings.keyBits};
  if (request_.hash == provider::kAlgorithmNone) return &sites.hashType;
  if (request_.cipher == provider::kAlgorithmNone) return &sites.cipherType;
  context_ = OpenSharedProvider(enhanced);
  return context_ ? nullptr : &sites.provider;
}

const CheckSite* DerivedKey::Derive(std::span<const std::uint8_t> password) {
  KeyRequest request = request_;
  request.password = password;
  const CipherStep step = key_.Derive(context_, request);
  if (step != CipherStep::Done) return &sites_->SiteOf(step);
  messages_ = key_.MakeMessageKey();
  return messages_ ? nullptr : &sites_->key;
}

const CheckSite* DerivedKey::Derive(const KeySettings& settings,
                                    std::span<const std::uint8_t> password,
                                    const CipherSites& sites) {
  const CheckSite* const failed = Open(settings, sites);
  return failed != nullptr ? failed : Derive(password);
}

bool DerivedKey::Transform(CipherDirection direction, std::span<std::uint8_t> buffer,
                           std::uint32_t& length) const {
  return direction == CipherDirection::Encrypt
             ? messages_->Encrypt(buffer.data(), &length, NarrowTo<std::uint32_t>(buffer.size()))
             : messages_->Decrypt(buffer.data(), &length);
}

void DerivedKey::TransformEach(CipherDirection direction,
                               const provider::MessageBatch& batch) const {
  direction == CipherDirection::Encrypt ? messages_->EncryptEach(batch)
                                        : messages_->DecryptEach(batch);
}

std::size_t DerivedKey::MostAdded() const noexcept {
  return settings_.HasBlockCipher() ? provider::kLargestPadding : 0;
}

PasswordKey DerivedKey::NewSession() const { return key_.NewSession(*messages_); }

}  // namespace latchkey
