// Many messages in one call.
#include <gtest/gtest.h>

#include <array>
#include <functional>
#include <limits>

#include "tests/c/client.h"
#include "tests/support/random_bytes.h"

namespace latchkey::test {
namespace {

constexpr Reason kFailed{LATCHKEY_CIPHER_FAILED, 717, 120};
constexpr Reason kBadArgument{LATCHKEY_BAD_ARGUMENT, 0, 0};

using Function = decltype(&latchkey_encrypt_records);

// The status and the description of the first failed record.
template <class Offset>
std::pair<std::int32_t, Reason> Transform(Function function, const latchkey_key* key,
                                          const latchkey_records& records,
                                          ResultColumn<Offset>& results,
                                          std::uint32_t threads = 1) {
  latchkey_failure failure = LATCHKEY_FAILURE_INIT;
  const std::int32_t status = function(key, &records, threads, &results.view, &failure);
  return {status, ReasonOf(failure)};
}

template <class Offset>
class CRecordsTest : public testing::Test {};

using OffsetTypes = testing::Types<std::int32_t, std::int64_t>;
TYPED_TEST_SUITE(CRecordsTest, OffsetTypes);

// The results of processing the same records one by one; empty for those that fail.
template <class Offset>
void ExpectAsOneByOne(const latchkey_key* key, bool encrypts, const std::vector<Bytes>& records,
                      const ResultColumn<Offset>& results) {
  std::size_t sum = 0;
  std::size_t failed = 0;
  for (std::size_t i = 0; i < records.size(); ++i) {
    const std::size_t room = records[i].size() + 8;
    const Output one = encrypts ? Encrypt(key, records[i], room) : Decrypt(key, records[i], room);
    ASSERT_EQ(results.statuses[i], one.status) << i;
    ASSERT_EQ(results[i],
              Bytes(one.room.begin(), one.room.begin() + static_cast<std::ptrdiff_t>(one.length)))
        << i;
    sum += one.length;
    if (one.status != LATCHKEY_OK) ++failed;
  }
  EXPECT_EQ(results.offsets.front(), 0);
  EXPECT_EQ(results.view.data_length, sum);
  EXPECT_EQ(results.view.failed, failed);
}

TYPED_TEST(CRecordsTest, ResultsAreThoseOfSingleCallsOnAnyNumberOfThreads) {
  RandomSource random(4);
  for (std::int32_t cipher = LATCHKEY_RC4; cipher <= LATCHKEY_3DES_112; ++cipher) {
    const Key key = OpenKey(cipher);
    for (const std::uint32_t threads : {0U, 1U, 2U, 3U, 4U, 1000U}) {
      const std::size_t count = random.Below(5000);
      std::vector<Bytes> plaintexts;
      std::vector<Bytes> ciphertexts;
      Column<TypeParam> plain;
      Column<TypeParam> secret;
      for (std::size_t i = 0; i < count; ++i) {
        plaintexts.push_back(random.Some(random.Below(40)));
        plain.Add(plaintexts.back());
        // Every tenth record is not a ciphertext.
        ciphertexts.push_back(random.Below(10) > 0 ? Encrypted(key, plaintexts.back())
                                                   : random.Some(random.Below(30)));
        secret.Add(ciphertexts.back());
      }
      ResultColumn<TypeParam> encrypted(count, plain.data.size() + 8 * count);
      ASSERT_EQ(Transform(latchkey_encrypt_records, key, plain.View(), encrypted, threads).first,
                LATCHKEY_OK);
      ExpectAsOneByOne(key, true, plaintexts, encrypted);
      ResultColumn<TypeParam> decrypted(count, secret.data.size());
      ASSERT_EQ(Transform(latchkey_decrypt_records, key, secret.View(), decrypted, threads).first,
                LATCHKEY_OK);
      ExpectAsOneByOne(key, false, ciphertexts, decrypted);
    }
  }
}

TYPED_TEST(CRecordsTest, ARecordFailsAlone) {
  const Key key = OpenKey(LATCHKEY_3DES);
  Column<TypeParam> column;
  column.Add(Encrypted(key, BytesOf("first")));
  column.Add(SampleBytes(7));
  column.Add({});
  column.Add(Encrypted(key, BytesOf("last")));
  ResultColumn<TypeParam> results(4, column.data.size());
  EXPECT_EQ(Transform(latchkey_decrypt_records, key, column.View(), results),
            std::pair(static_cast<std::int32_t>(LATCHKEY_OK), kFailed));
  EXPECT_EQ(results.statuses, (std::vector<std::int32_t>{LATCHKEY_OK, LATCHKEY_CIPHER_FAILED,
                                                         LATCHKEY_CIPHER_FAILED, LATCHKEY_OK}));
  EXPECT_EQ(results.offsets, (std::vector<TypeParam>{0, 5, 5, 5, 9}));
  EXPECT_EQ(results[3], BytesOf("last"));
  EXPECT_EQ(results.view.failed, 2U);
}

TYPED_TEST(CRecordsTest, StatusesMayBeNull) {
  const Key key = OpenKey(LATCHKEY_3DES);
  Column<TypeParam> column;
  column.Add(SampleBytes(7));
  column.Add(Encrypted(key, BytesOf("good")));
  ResultColumn<TypeParam> results(2, column.data.size());
  results.view.statuses = nullptr;
  EXPECT_EQ(Transform(latchkey_decrypt_records, key, column.View(), results).second, kFailed);
  EXPECT_EQ(results.view.failed, 1U);
  EXPECT_EQ(results[1], BytesOf("good"));
}

TYPED_TEST(CRecordsTest, SuccessLeavesNoFailure) {
  const Key key = OpenKey();
  Column<TypeParam> column;
  column.Add(BytesOf("good"));
  ResultColumn<TypeParam> results(1, 16);
  EXPECT_EQ(Transform(latchkey_encrypt_records, key, column.View(), results),
            std::pair(static_cast<std::int32_t>(LATCHKEY_OK), Reason{}));
  EXPECT_EQ(results.view.failed, 0U);
}

TYPED_TEST(CRecordsTest, NoRecordsAndEmptyRecordsAreGood) {
  for (const std::int32_t cipher : {LATCHKEY_RC4, LATCHKEY_DES}) {
    const Key key = OpenKey(cipher);
    for (const std::size_t count : {0U, 3U, 3000U}) {
      Column<TypeParam> column;
      for (std::size_t i = 0; i < count; ++i) column.Add({});
      latchkey_records records = column.View();
      records.data = nullptr;
      const std::size_t room = cipher == LATCHKEY_RC4 ? 0 : 8 * count;
      ResultColumn<TypeParam> results(count, room);
      if (room == 0) results.view.data = nullptr;
      ASSERT_EQ(Transform(latchkey_encrypt_records, key, records, results, 2).first, LATCHKEY_OK);
      EXPECT_EQ(results.view.data_length, room);
      EXPECT_EQ(results.offsets.front(), 0);
      EXPECT_EQ(static_cast<std::size_t>(results.offsets.back()), room);
    }
  }
}

TYPED_TEST(CRecordsTest, RecordsMayBeginAfterTheDataDoes) {
  const Key key = OpenKey(LATCHKEY_RC4);
  Column<TypeParam> column;
  column.data = BytesOf("skipped text skipped");
  column.offsets = {8, 12};
  ResultColumn<TypeParam> results(1, 4);
  ASSERT_EQ(Transform(latchkey_encrypt_records, key, column.View(), results).first, LATCHKEY_OK);
  EXPECT_EQ(results[0], Encrypted(key, BytesOf("text")));
}

TYPED_TEST(CRecordsTest, BytesAfterTheResultsBecomeZeros) {
  const Key key = OpenKey(LATCHKEY_DES);
  Column<TypeParam> column;
  for (int i = 0; i < 3000; ++i) column.Add(Encrypted(key, BytesOf("a text")));
  column.Add(SampleBytes(64));  // bad padding
  ResultColumn<TypeParam> results(3001, column.data.size());
  ASSERT_EQ(Transform(latchkey_decrypt_records, key, column.View(), results, 2).first, LATCHKEY_OK);
  ASSERT_EQ(results.view.data_length, 18000U);
  const auto end = results.data.begin() + static_cast<std::ptrdiff_t>(column.data.size());
  EXPECT_TRUE(std::all_of(results.data.begin() + 18000, end, [](auto byte) { return byte == 0; }));
  EXPECT_TRUE(std::all_of(end, results.data.end(), [](auto byte) { return byte == kGuard; }));
}

TYPED_TEST(CRecordsTest, OneByteTooLittleRoomWritesOnlyTheRoomNeeded) {
  const Key key = OpenKey(LATCHKEY_DES);
  Column<TypeParam> column;
  column.Add(SampleBytes(5));
  column.Add(SampleBytes(8));
  for (const auto& [function, needed] :
       {std::pair{&latchkey_encrypt_records, 24U}, std::pair{&latchkey_decrypt_records, 13U}}) {
    ResultColumn<TypeParam> results(2, needed - 1);
    EXPECT_EQ(Transform(function, key, column.View(), results),
              std::pair(static_cast<std::int32_t>(LATCHKEY_BUFFER_TOO_SMALL),
                        Reason{LATCHKEY_BUFFER_TOO_SMALL}));
    EXPECT_EQ(results.view.data_length, needed);
    EXPECT_TRUE(results.IsUntouched());
    ResultColumn<TypeParam> enough(2, needed);
    EXPECT_EQ(Transform(function, key, column.View(), enough).first, LATCHKEY_OK);
  }
}

TYPED_TEST(CRecordsTest, OffsetsThatDescendOrLeaveTheDataAreRefused) {
  const Key key = OpenKey(LATCHKEY_RC4);
  constexpr TypeParam most = std::numeric_limits<TypeParam>::max();
  constexpr TypeParam least = std::numeric_limits<TypeParam>::min();
  for (const std::vector<TypeParam>& offsets :
       {std::vector<TypeParam>{0, 5, 4}, std::vector<TypeParam>{0, 5, 21},
        std::vector<TypeParam>{-1, 5, 6}, std::vector<TypeParam>{0, -1, 6},
        std::vector<TypeParam>{0, 5, most}, std::vector<TypeParam>{0, most, 5},
        std::vector<TypeParam>{least, 0, 5}, std::vector<TypeParam>{21, 21, 21}}) {
    Column<TypeParam> column;
    column.data = SampleBytes(20);
    column.offsets = offsets;
    ResultColumn<TypeParam> results(2, 64);
    EXPECT_EQ(Transform(latchkey_decrypt_records, key, column.View(), results).second,
              kBadArgument);
    EXPECT_TRUE(results.IsUntouched());
  }
}

// Changes one member of good arguments, which must then be refused.
TYPED_TEST(CRecordsTest, WrongMembersAreRefused) {
  const Key key = OpenKey(LATCHKEY_RC4);
  Column<TypeParam> column;
  column.Add(SampleBytes(10));
  using Results = ResultColumn<TypeParam>;
  const auto refused = [&](const std::function<void(latchkey_records&, Results&)>& change) {
    latchkey_records records = column.View();
    Results results(1, 32);
    change(records, results);
    EXPECT_EQ(Transform(latchkey_encrypt_records, key, records, results).second, kBadArgument);
    EXPECT_TRUE(results.IsUntouched());
  };
  for (const std::uint32_t size : {0U, 8U, 39U, 41U, 0xFFFFFFFFU}) {
    refused([=](latchkey_records& records, Results&) { records.size = size; });
    refused([=](latchkey_records&, Results& results) { results.view.size = size; });
  }
  for (const std::uint32_t size : {0U, 1U, 2U, 5U, 16U}) {
    refused([=](latchkey_records& records, Results&) { records.offset_size = size; });
    refused([=](latchkey_records&, Results& results) { results.view.offset_size = size; });
  }
  for (const std::size_t count : {SIZE_MAX, SIZE_MAX / 2, SIZE_MAX / 4, SIZE_MAX / 8 - 1}) {
    refused([=](latchkey_records& records, Results&) { records.count = count; });
  }
  refused([](latchkey_records& records, Results&) { records.offsets = nullptr; });
  refused([](latchkey_records& records, Results&) { records.data = nullptr; });
  refused([](latchkey_records& records, Results&) { records.data_length = SIZE_MAX; });
  refused([](latchkey_records&, Results& results) { results.view.offsets = nullptr; });
  refused([](latchkey_records&, Results& results) { results.view.data = nullptr; });
  refused([](latchkey_records&, Results& results) { results.view.data_length = SIZE_MAX; });
}

TYPED_TEST(CRecordsTest, MisalignedNumbersAreRefused) {
  const Key key = OpenKey(LATCHKEY_RC4);
  Column<TypeParam> column;
  column.Add(SampleBytes(10));
  alignas(8) std::array<std::uint8_t, 32> memory{};
  latchkey_records records = column.View();
  records.offsets = memory.data() + 1;
  ResultColumn<TypeParam> results(1, 32);
  EXPECT_EQ(Transform(latchkey_encrypt_records, key, records, results).second, kBadArgument);
  results.view.offsets = memory.data() + 2;
  EXPECT_EQ(Transform(latchkey_encrypt_records, key, column.View(), results).second, kBadArgument);
  ResultColumn<TypeParam> others(1, 32);
  others.view.statuses = reinterpret_cast<std::int32_t*>(memory.data() + 1);
  EXPECT_EQ(Transform(latchkey_encrypt_records, key, column.View(), others).second, kBadArgument);
}

// Each output overlaps each input and each other output, by one byte or number.
TYPED_TEST(CRecordsTest, OverlappingMemoryIsRefused) {
  const Key key = OpenKey(LATCHKEY_RC4);
  using Results = ResultColumn<TypeParam>;
  alignas(8) std::array<std::uint8_t, 256> memory{};
  const auto refused = [&](const std::function<void(latchkey_records&, latchkey_results&)>& lay) {
    Column<TypeParam> column;
    column.Add(SampleBytes(16));
    latchkey_records records = column.View();
    Results results(1, 16);
    std::copy_n(reinterpret_cast<const std::uint8_t*>(column.offsets.data()), 2 * sizeof(TypeParam),
                memory.begin() + 64);
    lay(records, results.view);
    EXPECT_EQ(Transform(latchkey_encrypt_records, key, records, results).second, kBadArgument);
  };
  auto* const at = memory.data() + 64;  // offsets or data; statuses are 4 bytes before
  refused([&](auto& in, auto& out) { in.offsets = at, out.offsets = at + sizeof(TypeParam); });
  refused([&](auto& in, auto& out) { in.offsets = at, out.data = at - 15; });
  refused([&](auto& in, auto& out) {
    in.offsets = at, out.statuses = reinterpret_cast<std::int32_t*>(at + sizeof(TypeParam));
  });
  refused([&](auto& in, auto& out) { in.data = at, out.offsets = at - sizeof(TypeParam); });
  refused([&](auto& in, auto& out) { in.data = at, out.data = at; });
  refused([&](auto& in, auto& out) { in.data = at, out.data = at + 15; });
  refused([&](auto& in, auto& out) {
    in.data = at, out.statuses = reinterpret_cast<std::int32_t*>(at + 12);
  });
  refused([&](auto&, auto& out) { out.offsets = at, out.data = at + 2 * sizeof(TypeParam) - 1; });
  refused([&](auto&, auto& out) {
    out.offsets = at, out.statuses = reinterpret_cast<std::int32_t*>(at + sizeof(TypeParam));
  });
  refused([&](auto&, auto& out) {
    out.data = at, out.statuses = reinterpret_cast<std::int32_t*>(at + 12);
  });
}

TEST(CRecordsArgumentsTest, NullAndOtherObjectsAreRefused) {
  const Key key = OpenKey(LATCHKEY_RC4);
  Column<std::int64_t> column;
  column.Add(SampleBytes(10));
  const latchkey_records records = column.View();
  ResultColumn<std::int64_t> results(1, 16);
  for (const Function function : {&latchkey_encrypt_records, &latchkey_decrypt_records}) {
    EXPECT_EQ(function(key, nullptr, 1, &results.view, nullptr), LATCHKEY_BAD_ARGUMENT);
    EXPECT_EQ(function(key, &records, 1, nullptr, nullptr), LATCHKEY_BAD_ARGUMENT);
    EXPECT_EQ(function(nullptr, &records, 1, &results.view, nullptr), LATCHKEY_BAD_OBJECT);
    const Stream stream = OpenStream(key, LATCHKEY_ENCRYPT);
    const auto* const notAKey =
        reinterpret_cast<const latchkey_key*>(static_cast<latchkey_stream*>(stream));
    EXPECT_EQ(function(notAKey, &records, 1, &results.view, nullptr), LATCHKEY_BAD_OBJECT);
  }
  EXPECT_TRUE(results.IsUntouched());
}

}  // namespace
}  // namespace latchkey::test
