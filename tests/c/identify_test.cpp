// Settings that ciphertexts were made with.
#include <gtest/gtest.h>

#include <array>

#include "tests/c/client.h"
#include "tests/support/random_bytes.h"

namespace latchkey::test {
namespace {

constexpr std::string_view kText =
    "It is a truth universally acknowledged, that a single man in possession of a good fortune, "
    "must be in want of a wife.";
constexpr std::string_view kPassword = "secret";

std::int32_t Identify(const latchkey_records& samples, latchkey_candidate* candidates,
                      std::size_t& count, std::string_view password = kPassword,
                      latchkey_failure* failure = nullptr) {
  return latchkey_identify(&samples, reinterpret_cast<const std::uint8_t*>(password.data()),
                           password.size(), sizeof(latchkey_candidate), candidates, &count,
                           failure);
}

// The candidates, of which 64 are enough.
std::vector<latchkey_candidate> Found(const Column<std::int32_t>& samples) {
  std::vector<latchkey_candidate> candidates(64);
  std::size_t count = candidates.size();
  EXPECT_EQ(Identify(samples.View(), candidates.data(), count), LATCHKEY_OK);
  candidates.resize(count);
  double sum = 0;
  for (std::size_t i = 0; i < count; ++i) {
    const double probability = candidates[i].probability;
    sum += probability;
    EXPECT_TRUE(probability >= 0 && probability <= 1) << probability;
    EXPECT_TRUE(i == 0 || probability <= candidates[i - 1].probability) << "the order";
    EXPECT_EQ(candidates[i].settings.size, sizeof(latchkey_settings));
    EXPECT_EQ(candidates[i].padding == -1, candidates[i].settings.cipher == LATCHKEY_RC4);
  }
  EXPECT_LE(sum, 1 + 1e-9);
  return candidates;
}

TEST(CIdentifyTest, TheBestCandidateOpensTheKeyForEverySetting) {
  for (const std::int32_t provider : {LATCHKEY_BASE, LATCHKEY_ENHANCED}) {
    for (std::int32_t cipher = LATCHKEY_RC4; cipher <= LATCHKEY_3DES_112; ++cipher) {
      if (provider == LATCHKEY_BASE && cipher >= LATCHKEY_3DES) continue;
      for (std::int32_t hash = LATCHKEY_MD5; hash <= LATCHKEY_SHA1; ++hash) {
        for (const std::uint32_t bits : {0U, 40U}) {
          if (bits != 0 && cipher != LATCHKEY_RC2) continue;
          const Key key = OpenKey(SettingsOf(hash, cipher, provider, 0, bits), kPassword);
          Column<std::int32_t> samples;
          samples.Add(Encrypted(key, BytesOf(kText)));
          const auto found = Found(samples);
          ASSERT_FALSE(found.empty());
          EXPECT_GT(found[0].probability, 0.99);
          EXPECT_EQ(found[0].settings.hash, hash);
          EXPECT_EQ(found[0].settings.cipher, cipher);
          EXPECT_EQ(Decrypted(OpenKey(found[0].settings, kPassword), samples.data), BytesOf(kText))
              << provider << ' ' << cipher << ' ' << hash << ' ' << bits;
          EXPECT_EQ(found[0].padding,
                    cipher == LATCHKEY_RC4 ? -1 : static_cast<std::int32_t>(8 - kText.size() % 8));
        }
      }
    }
  }
}

TEST(CIdentifyTest, MoreSamplesGiveAMoreProbableAnswer) {
  const Key key = OpenKey(SettingsOf(LATCHKEY_MD5, LATCHKEY_3DES), kPassword);
  RandomSource random(5);
  Column<std::int32_t> samples;
  double before = 0;
  for (int i = 0; i < 3; ++i) {
    samples.Add(Encrypted(key, random.Some(5)));  // three bytes of padding
    double now = 0;
    for (const latchkey_candidate& candidate : Found(samples)) {
      const bool isRight =
          candidate.settings.cipher == LATCHKEY_3DES && candidate.settings.hash == LATCHKEY_MD5;
      if (isRight) now = candidate.probability;
    }
    EXPECT_GT(now, before) << i;
    before = now;
  }
  EXPECT_GT(before, 0.99);
}

TEST(CIdentifyTest, ASmallerRoomHasTheMostProbableOnes) {
  const Key key = OpenKey(SettingsOf(LATCHKEY_MD5, LATCHKEY_DES), kPassword);
  Column<std::int32_t> samples;
  for (int i = 0;; ++i) {
    samples = {};
    samples.Add(Encrypted(key, BytesOf(std::to_string(i) + "abcdef")));
    if (Found(samples).size() > 1) break;
    ASSERT_LT(i, 1000) << "no sample that other settings fit too";
  }
  const auto all = Found(samples);
  std::vector<latchkey_candidate> one(2);
  std::size_t count = 1;
  ASSERT_EQ(Identify(samples.View(), one.data(), count), LATCHKEY_OK);
  EXPECT_EQ(count, 1U);
  EXPECT_EQ(one[0].probability, all[0].probability);
  EXPECT_EQ(one[1].settings.size, 0U) << "written after the room";
  count = 0;
  EXPECT_EQ(Identify(samples.View(), nullptr, count), LATCHKEY_OK);
  EXPECT_EQ(count, 0U);
}

TEST(CIdentifyTest, NoSettingsFitRandomBytesOrNoSamples) {
  RandomSource random(6);
  Column<std::int32_t> samples;
  EXPECT_TRUE(Found(samples).empty());
  samples.Add(random.Some(1001));
  EXPECT_TRUE(Found(samples).empty());
}

TEST(CIdentifyTest, BadArgumentsAreRefused) {
  Column<std::int32_t> samples;
  samples.Add(SampleBytes(16));
  const latchkey_records good = samples.View();
  std::array<latchkey_candidate, 2> candidates{};
  const auto refused = [&](const latchkey_records* given, const void* password,
                           std::size_t candidateSize, latchkey_candidate* room,
                           std::size_t roomCount) {
    std::size_t count = roomCount;
    latchkey_failure failure = LATCHKEY_FAILURE_INIT;
    EXPECT_EQ(latchkey_identify(given, static_cast<const std::uint8_t*>(password), 3, candidateSize,
                                room, &count, &failure),
              LATCHKEY_BAD_ARGUMENT);
    EXPECT_EQ(ReasonOf(failure), (Reason{LATCHKEY_BAD_ARGUMENT, 0, 0}));
    EXPECT_EQ(count, 0U);
  };
  constexpr std::size_t size = sizeof(latchkey_candidate);
  latchkey_candidate* const room = candidates.data();
  refused(nullptr, "abc", size, room, 2);
  refused(&good, nullptr, size, room, 2);
  refused(&good, "abc", size - 1, room, 2);
  refused(&good, "abc", size + 8, room, 2);
  refused(&good, "abc", size, nullptr, 2);
  refused(&good, "abc", size, room, SIZE_MAX);
  refused(&good, "abc", size, room, SIZE_MAX / size + 2);
  refused(&good, reinterpret_cast<const std::uint8_t*>(room) + 2 * size - 1, size, room, 2);
  latchkey_records bad = good;
  bad.data = reinterpret_cast<const std::uint8_t*>(room + 1);
  refused(&bad, "abc", size, room, 2);
  bad = good;
  bad.offset_size = 5;
  refused(&bad, "abc", size, room, 2);
  EXPECT_EQ(latchkey_identify(&good, nullptr, 0, size, room, nullptr, nullptr),
            LATCHKEY_BAD_ARGUMENT);
}

}  // namespace
}  // namespace latchkey::test
