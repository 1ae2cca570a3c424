// The settings that ciphertexts were made with.
#include "crypto/engine/candidates.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "tests/support/bytes.h"

namespace latchkey::test {
namespace {

constexpr std::string_view kText = "It is altogether fitting and proper that we should do this.";

Bytes Encrypted(const KeySettings& settings, std::string_view text) {
  DerivedKey key;
  EXPECT_EQ(key.Derive(settings, BytesOf("pw")), nullptr);
  Bytes message = BytesOf(text);
  auto length = static_cast<std::uint32_t>(message.size());
  message.resize(message.size() + key.MostAdded());
  EXPECT_TRUE(key.Transform(CipherDirection::Encrypt, message, length));
  message.resize(length);
  return message;
}

TEST(CandidatesTest, TheRightSettingsComeFirstForEveryHashAndCipher) {
  for (std::int32_t hash = 1; hash <= 4; ++hash) {
    for (std::int32_t cipher = 1; cipher <= 5; ++cipher) {
      const KeySettings settings{hash, cipher, ProviderChoice::Enhanced};
      const Bytes ciphertext = Encrypted(settings, kText);
      const Candidates found =
          FindCandidates(std::array{CiphertextSample::Of(ciphertext)}, BytesOf("pw"));
      ASSERT_FALSE(found.fitting.empty());
      const auto& first = found.fitting.front();
      EXPECT_NE(std::ranges::find(first.settings, settings), first.settings.end());
      EXPECT_GT(first.probability, 0.9999);
    }
  }
}

// One short block says little; several of them under the same settings say enough.
TEST(CandidatesTest, SamplesAddUp) {
  const KeySettings settings{1, 4, ProviderChoice::Enhanced};
  std::vector<Bytes> ciphertexts;
  for (const char* const text : {"Ann", "Bob", "Eve", "Ida", "Joe", "Kay"}) {
    ciphertexts.push_back(Encrypted(settings, text));
  }
  std::vector<CiphertextSample> samples;
  double before = 0;
  for (const Bytes& ciphertext : ciphertexts) {
    samples.push_back(CiphertextSample::Of(ciphertext));
    const Candidates found = FindCandidates(samples, BytesOf("pw"));
    ASSERT_FALSE(found.fitting.empty());
    EXPECT_EQ(found.fitting.front().settings.front(), settings);
    EXPECT_GE(found.fitting.front().evidenceBits, before);
    before = found.fitting.front().evidenceBits;
  }
}

TEST(CandidatesTest, OneDamagedSampleExcludesABlockCipher) {
  const Bytes good = Encrypted({1, 4, ProviderChoice::Enhanced}, kText);
  const Bytes cut(good.begin(), good.end() - 1);
  const std::array samples{CiphertextSample::Of(good), CiphertextSample::Of(cut)};
  const Candidates found = FindCandidates(samples, BytesOf("pw"));
  EXPECT_TRUE(std::ranges::none_of(
      found.fitting, [](const Candidate& candidate) { return candidate.padding.has_value(); }));
}

}  // namespace
}  // namespace latchkey::test
