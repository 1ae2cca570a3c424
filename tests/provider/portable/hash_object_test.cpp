#include <gtest/gtest.h>
#include <nettle/nettle-meta.h>

#include <algorithm>
#include <utility>

#include "provider/portable/hash_object.h"
#include "tests/support/random_bytes.h"

namespace latchkey::test {
namespace {

using namespace provider;  // NOLINT: the namespace under test

using Pair = std::pair<AlgorithmId, const nettle_hash*>;

class KernelHashTest : public ::testing::TestWithParam<Pair> {
 protected:
  [[nodiscard]] static Bytes Reference(const Bytes& data) {
    const nettle_hash& hash = *GetParam().second;
    Bytes context(hash.context_size);
    Bytes value(hash.digest_size);
    hash.init(context.data());
    hash.update(context.data(), data.size(), data.data());
    hash.digest(context.data(), value.size(), value.data());
    return value;
  }

  [[nodiscard]] static Bytes ValueOf(HashObject& hash) {
    const WipedBytes& value = hash.Value();
    return {value.begin(), value.end()};
  }

  RandomSource random{20263};
};

TEST_P(KernelHashTest, EveryLengthEqualsTheReference) {
  const nettle_hash& hash = *HashAlgorithm(GetParam().first);
  for (std::size_t length = 0; length <= 300; ++length) {
    const Bytes data = random.Some(length);
    const WipedBytes value = HashOf(hash, data);
    ASSERT_EQ(Bytes(value.begin(), value.end()), Reference(data)) << "length " << length;
  }
}

TEST_P(KernelHashTest, PiecesAtAnyAddressEqualTheReferenceInOneCall) {
  for (int round = 0; round < 200; ++round) {
    const Bytes data = random.Some(random.Below(std::size_t{1} << random.Below(14)));
    HashObject hash(0, *HashAlgorithm(GetParam().first));
    for (std::size_t done = 0; done < data.size();) {
      const std::size_t piece = std::min(1 + random.Below(300), data.size() - done);
      ASSERT_TRUE(hash.Add(std::span(data).subspan(done, piece)));
      done += piece;
    }
    ASSERT_EQ(ValueOf(hash), Reference(data)) << "length " << data.size();
  }
}

INSTANTIATE_TEST_SUITE_P(Hashes, KernelHashTest,
                         ::testing::Values(Pair(kAlgorithmMd2, &nettle_md2),
                                           Pair(kAlgorithmMd4, &nettle_md4),
                                           Pair(kAlgorithmMd5, &nettle_md5),
                                           Pair(kAlgorithmSha1, &nettle_sha1)),
                         [](const auto& hash) { return hash.param.second->name; });

}  // namespace
}  // namespace latchkey::test
