#include "cli/temporary_name.h"

#include <array>
#include <cstdint>

#include "cli/name_hash.h"
#include "platform/system_random.h"

namespace latchkey::cli {
namespace {

constexpr std::string_view kPrefix = ".latchkey-";
// File systems may ignore case.
constexpr std::string_view kCharacters = "abcdefghijklmnopqrstuvwxyz234567";
constexpr std::size_t kRandomLength = 16;
constexpr std::size_t kCheckLength = 8;
constexpr std::size_t kLength = kPrefix.size() + kRandomLength + kCheckLength;

char CharacterOf(std::uint64_t number) noexcept {
  return kCharacters[static_cast<std::size_t>(number % kCharacters.size())];
}

std::array<char, kCheckLength> CheckSumOf(std::string_view text) noexcept {
  std::array<char, kCheckLength> sum{};
  std::uint64_t hash = NameHash(text);
  for (char& character : sum) {
    character = CharacterOf(hash);
    hash /= kCharacters.size();
  }
  return sum;
}

}  // namespace

std::string NewTemporaryName() {
  std::array<std::uint8_t, kRandomLength> bytes{};
  if (!platform::FillRandom(bytes)) return {};
  std::string name;
  name.reserve(kLength);
  name = kPrefix;
  for (const std::uint8_t byte : bytes) name += CharacterOf(byte);
  const auto sum = CheckSumOf(name);
  return name.append(sum.begin(), sum.end());
}

bool IsTemporaryName(std::string_view name) noexcept {
  if (name.size() != kLength || !name.starts_with(kPrefix)) return false;
  const std::string_view sum = name.substr(kLength - kCheckLength);
  const auto expected = CheckSumOf(name.substr(0, kLength - kCheckLength));
  return sum == std::string_view(expected.data(), expected.size());
}

}  // namespace latchkey::cli
