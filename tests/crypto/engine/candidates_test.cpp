// The settings that ciphertexts were made with.
#include "crypto/engine/candidates.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "tests/crypto/engine/whole_message.h"
#include "tests/support/bytes.h"

namespace latchkey::test {
namespace {

constexpr std::string_view kText = "It is altogether fitting and proper that we should do this.";

Bytes Encrypted(const KeySettings& settings, std::string_view text) {
  DerivedKey key;
  EXPECT_EQ(key.Derive(settings, BytesOf("pw")), nullptr);
  return Whole(key, CipherDirection::Encrypt, BytesOf(text));
}

std::vector<CiphertextSample> SamplesOf(const std::vector<Bytes>& ciphertexts) {
  std::vector<CiphertextSample> samples;
  samples.reserve(ciphertexts.size());
  for (const Bytes& ciphertext : ciphertexts) samples.push_back(CiphertextSample::Of(ciphertext));
  return samples;
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
TEST(CandidatesTest, EverySampleAddsEvidence) {
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
    EXPECT_GE(found.fitting.front().evidence.bits, before);
    before = found.fitting.front().evidence.bits;
  }
}

TEST(CandidatesTest, OneDamagedSampleExcludesABlockCipher) {
  const Bytes good = Encrypted({1, 4, ProviderChoice::Enhanced}, kText);
  const Bytes cut(good.begin(), good.end() - 9);
  const std::array samples{CiphertextSample::Of(good), CiphertextSample::Of(cut)};
  const Candidates found = FindCandidates(samples, BytesOf("pw"));
  EXPECT_TRUE(std::ranges::none_of(found.fitting, [](const Candidate& candidate) {
    return candidate.evidence.padding.has_value();
  }));
}

// The ciphertext of a text, the first of several, that ends in the byte that clients cut.
Bytes EndingInSpace(const KeySettings& settings) {
  for (int number = 0;; ++number) {
    Bytes ciphertext = Encrypted(settings, std::string(kText) + std::to_string(number));
    if (ciphertext.back() == 0x20) return ciphertext;
  }
}

TEST(CandidatesTest, CutSpacesArePutBack) {
  const KeySettings settings{4, 4, ProviderChoice::Enhanced};
  Bytes cut = EndingInSpace(settings);
  cut.pop_back();
  const Candidates found = FindCandidates(std::array{CiphertextSample::Of(cut)}, BytesOf("pw"));
  ASSERT_TRUE(found.IsCertain());
  EXPECT_EQ(found.fitting.front().settings.front(), settings);
  EXPECT_EQ(found.fitting.front().evidence.restored, 1U);
}

TEST(CandidatesTest, UsualKeyLengthsAreTried) {
  for (const std::int32_t cipher : {1, 2}) {
    for (const std::uint32_t bits : {40U, 56U, 64U, 80U, 128U}) {
      const KeySettings settings{1, cipher, ProviderChoice::Enhanced, bits};
      const Bytes ciphertext = Encrypted(settings, kText);
      const Bytes password = BytesOf("pw");
      const std::array<std::span<const std::uint8_t>, 1> passwords{password};
      const Candidates found =
          CandidateSearch(passwords).Find(std::array{CiphertextSample::Of(ciphertext)});
      ASSERT_TRUE(found.IsCertain()) << cipher << ' ' << bits;
      DerivedKey key;
      ASSERT_EQ(key.Derive(found.fitting.front().settings.front(), BytesOf("pw")), nullptr);
      EXPECT_EQ(Whole(key, CipherDirection::Decrypt, ciphertext), BytesOf(kText));
    }
  }
}

TEST(CandidatesTest, TheRightPasswordOfSeveralIsNamed) {
  const Bytes ciphertext = Encrypted({1, 4, ProviderChoice::Enhanced}, kText);
  const Bytes wrong = BytesOf("other");
  const Bytes right = BytesOf("pw");
  const std::array<std::span<const std::uint8_t>, 3> passwords{wrong, right, wrong};
  const Candidates found =
      CandidateSearch(passwords).Find(std::array{CiphertextSample::Of(ciphertext)});
  ASSERT_TRUE(found.IsCertain());
  EXPECT_EQ(found.fitting.front().password, 1U);
}

// The same random bytes in many samples are no more evidence than in one.
TEST(CandidatesTest, EqualSamplesCountOnce) {
  Bytes ciphertext = Encrypted({1, 4, ProviderChoice::Enhanced}, "Yes");
  std::vector<CiphertextSample> samples(1000, CiphertextSample::Of(ciphertext));
  const std::span<const CiphertextSample> all(samples);
  for (int password = 0; password < 100; ++password) {
    const Bytes bytes = BytesOf("wrong" + std::to_string(password));
    const Candidates one = FindCandidates(all.first(1), bytes);
    const Candidates many = FindCandidates(all, bytes);
    EXPECT_FALSE(many.IsCertain());
    for (const Candidate& candidate : many.fitting) {
      EXPECT_TRUE(!candidate.evidence.padding || candidate.evidence.bits < 30);
    }
    EXPECT_LE(one.fitting.size(), one.tried);
  }
}

// With a wrong key of RC4, short samples are all xored with the same bytes.
TEST(CandidatesTest, AWrongKeyOfRc4IsNeverCertainForManyShortSamples) {
  std::vector<Bytes> ciphertexts;
  for (char letter = 'a'; letter <= 'z'; ++letter) {
    ciphertexts.push_back(Encrypted({1, 1, ProviderChoice::Enhanced}, std::string(1, letter)));
  }
  const std::vector<CiphertextSample> samples = SamplesOf(ciphertexts);
  for (int password = 0; password < 300; ++password) {
    const Candidates found = FindCandidates(samples, BytesOf("wrong" + std::to_string(password)));
    EXPECT_FALSE(found.IsCertain());
  }
}

TEST(CandidatesTest, ShortSamplesUnderRc4AddUp) {
  const KeySettings settings{1, 1, ProviderChoice::Enhanced};
  std::vector<Bytes> ciphertexts;
  for (const char* const text : {"Anna", "Bob", "Charles", "Emily", "Frances", "George", "Henry"}) {
    ciphertexts.push_back(Encrypted(settings, text));
  }
  const std::vector<CiphertextSample> samples = SamplesOf(ciphertexts);
  const Candidates found = FindCandidates(samples, BytesOf("pw"));
  ASSERT_FALSE(found.fitting.empty());
  EXPECT_EQ(found.fitting.front().settings.front(), settings);
  EXPECT_GT(found.fitting.front().probability, 0.99);
}

TEST(CandidatesTest, NoSamplesFitNothing) {
  EXPECT_TRUE(FindCandidates({}, BytesOf("pw")).fitting.empty());
  EXPECT_TRUE(FindCandidates(std::array{CiphertextSample{}}, BytesOf("pw")).fitting.empty());
}

}  // namespace
}  // namespace latchkey::test
