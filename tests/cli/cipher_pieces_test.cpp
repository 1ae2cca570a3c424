// A message in pieces gives the same bytes as in one call.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <random>

#include "crypto/algorithms.h"
#include "crypto/open_provider.h"
#include "crypto/password_cipher.h"
#include "provider/block_size.h"
#include "tests/support/test_seed.h"

namespace latchkey::test {
namespace {

using Bytes = std::vector<std::uint8_t>;

constexpr std::array<std::uint8_t, 6> kPassword{'s', 'e', 'c', 'r', 'e', 't'};

class CipherPiecesTest : public testing::TestWithParam<std::int16_t> {
 protected:
  // Processes `data` in pieces of the lengths `sizes`; the last piece is the rest.
  Bytes Run(CipherDirection direction, const Bytes& data, const std::vector<std::size_t>& sizes) {
    PasswordKey key;
    EXPECT_EQ(key.Derive(context, {FindHashAlgorithm(1).id, FindCipherAlgorithm(GetParam(), true),
                                   kPassword}),
              CipherStep::Done);
    Bytes result;
    std::size_t done = 0;
    for (std::size_t i = 0; i <= sizes.size(); ++i) {
      const bool final = i == sizes.size();
      const std::size_t size = final ? data.size() - done : std::min(sizes[i], data.size() - done);
      const auto start = data.begin() + static_cast<std::ptrdiff_t>(done);
      Bytes piece(start, start + static_cast<std::ptrdiff_t>(size));
      piece.resize(size + provider::kBlockSize);
      auto length = static_cast<std::uint32_t>(size);
      EXPECT_EQ(key.Transform(direction, piece, length, final), CipherStep::Done);
      result.insert(result.end(), piece.begin(),
                    piece.begin() + static_cast<std::ptrdiff_t>(length));
      done += size;
    }
    return result;
  }

  // Sizes of pieces, multiples of eight, whose sum is below `length`.
  std::vector<std::size_t> RandomSizes(std::size_t length) {
    std::vector<std::size_t> sizes;
    std::size_t left = length / provider::kBlockSize;
    while (left > 0 && random() % 8 != 0) {
      const std::size_t blocks = random() % left;
      sizes.push_back(blocks * provider::kBlockSize);
      left -= blocks;
    }
    return sizes;
  }

  std::mt19937 random = Seeded<std::mt19937>();
  UniqueContext context = OpenProvider(true);
};

INSTANTIATE_TEST_SUITE_P(EveryCipher, CipherPiecesTest, testing::Values(1, 2, 3, 4, 5));

TEST_P(CipherPiecesTest, RandomPiecesGiveTheSameBytesAsOneCall) {
  for (int round = 0; round < 200; ++round) {
    Bytes data(random() % 2000);
    std::generate(data.begin(), data.end(), [&] { return static_cast<std::uint8_t>(random()); });
    const Bytes whole = Run(CipherDirection::Encrypt, data, {});
    EXPECT_EQ(Run(CipherDirection::Encrypt, data, RandomSizes(data.size())), whole) << round;
    // The last piece of a padded message has at least the block with the padding.
    const std::size_t spare = GetParam() == 1 ? 0 : provider::kBlockSize;
    EXPECT_EQ(Run(CipherDirection::Decrypt, whole, RandomSizes(whole.size() - spare)), data)
        << round;
  }
}

}  // namespace
}  // namespace latchkey::test
