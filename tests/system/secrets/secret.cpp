#include "tests/system/secrets/secret.h"

#include "platform/system_code_page.h"
#include "tests/support/test_seed.h"

namespace latchkey::test {

Secret::Secret(std::span<const std::uint8_t> bytes) : size_(bytes.size()) {
  for (std::size_t i = 0; i < size_; ++i) {
    masked_.at(i) = static_cast<std::uint8_t>(bytes[i] ^ kMask);
  }
}

Secret::Secret(TextView text) : size_(text.size()) {
  for (std::size_t i = 0; i < size_; ++i) {
    masked_.at(i) = static_cast<std::uint8_t>(platform::SystemCodePage().CodeOf(text[i]) ^ kMask);
  }
}

Secret Secret::Random(std::size_t length) {
  Secret secret;
  secret.size_ = length;
  for (std::uint8_t& masked : std::span(secret.masked_).first(length)) {
    masked = static_cast<std::uint8_t>(('A' + SeededEngine()() % 26) ^ kMask);
  }
  return secret;
}

WipedBytes Secret::Bytes() const {
  WipedBytes bytes(size_);
  CopyTo(bytes);
  return bytes;
}

void Secret::CopyTo(std::span<std::uint8_t> target) const {
  for (std::size_t i = 0; i < target.size(); ++i) {
    target[i] = static_cast<std::uint8_t>(masked_.at(i) ^ kMask);
  }
}

void Secret::CopyTo(std::span<char16_t> target) const {
  for (std::size_t i = 0; i < target.size(); ++i) {
    target[i] = static_cast<char16_t>(
        platform::SystemCodePage().CharacterOf(static_cast<std::uint8_t>(masked_.at(i) ^ kMask)));
  }
}

ByteArray Secret::Array() const { return ByteArray::WithTrailingZero(Bytes()); }

WipedText Secret::Characters() const {
  WipedText text(size_);
  CopyTo(text);
  return text;
}

}  // namespace latchkey::test
