// Many messages in one call.
#include "crypto/engine/record_batch.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <stdexcept>

#include "crypto/engine/on_threads.h"
#include "tests/crypto/engine/whole_message.h"
#include "tests/support/bytes.h"
#include "tests/support/random_bytes.h"

namespace latchkey::test {
namespace {

// Records with the memory that they are in.
struct Column {
  std::vector<std::int64_t> offsets{0};
  Bytes data;

  void Add(const Bytes& record) {
    data.insert(data.end(), record.begin(), record.end());
    offsets.push_back(std::ssize(data));
  }
  [[nodiscard]] latchkey::Records View() const {
    return {offsets.size() - 1, Offsets(offsets.data()), data};
  }
};

struct Outcome {
  std::vector<Bytes> results;
  std::vector<std::int32_t> statuses;
  std::size_t failed = 0;
  Bytes after;  // the rest of the room
};

Outcome RunBatch(const DerivedKey& key, CipherDirection direction, const Column& column,
                 std::size_t threads) {
  const latchkey::Records records = column.View();
  RecordBatch batch(key, direction, records);
  Bytes data(batch.RoomNeeded(), 0xEE);
  std::vector<std::int32_t> offsets(records.count + 1, -1);
  Outcome outcome;
  outcome.statuses.resize(records.count, -1);
  batch.Run(threads, {ResultOffsets(offsets.data()), data, outcome.statuses, {0, 1, 2}});
  EXPECT_EQ(offsets.front(), 0);
  EXPECT_EQ(static_cast<std::size_t>(offsets.back()), batch.Length());
  for (std::size_t i = 0; i < records.count; ++i) {
    outcome.results.emplace_back(data.begin() + offsets[i], data.begin() + offsets[i + 1]);
  }
  outcome.after.assign(data.begin() + offsets.back(), data.end());
  outcome.failed = batch.FailedCount();
  return outcome;
}

class RecordBatchTest : public testing::TestWithParam<std::int32_t> {
 protected:
  void SetUp() override { ASSERT_EQ(key.Derive({1, GetParam()}, BytesOf("pw")), nullptr); }

  DerivedKey key;
  RandomSource random{20264};
};

TEST_P(RecordBatchTest, EachResultIsThatOfTheRecordAlone) {
  Column column;
  for (int i = 0; i < 3000; ++i) column.Add(random.Some(random.Below(40)));
  for (const std::size_t threads : {0U, 1U, 2U, 4U}) {
    for (const CipherDirection direction : {CipherDirection::Encrypt, CipherDirection::Decrypt}) {
      const Outcome outcome = RunBatch(key, direction, column, threads);
      std::size_t failed = 0;
      for (std::size_t i = 0; i < 3000; ++i) {
        const auto record = column.View()[i];
        const Bytes expected = Whole(key, direction, {record.begin(), record.end()});
        ASSERT_EQ(outcome.results[i], expected) << i;
        if (outcome.statuses[i] != 0) ++failed;
      }
      EXPECT_EQ(outcome.failed, failed);
      EXPECT_EQ(std::count(outcome.after.begin(), outcome.after.end(), 0),
                std::ssize(outcome.after));
    }
  }
}

TEST_P(RecordBatchTest, NoRecordsGiveNoResults) {
  const Outcome outcome = RunBatch(key, CipherDirection::Decrypt, Column(), 0);
  EXPECT_TRUE(outcome.results.empty());
  EXPECT_EQ(outcome.failed, 0U);
}

TEST(RecordBatchStatusTest, ARecordThatFailsFailsAlone) {
  DerivedKey key;
  ASSERT_EQ(key.Derive({1, 3}, BytesOf("pw")), nullptr);
  const Bytes good = Whole(key, CipherDirection::Encrypt, BytesOf("good"));
  Column column;
  for (const Bytes& record : {good, Bytes(7), Bytes(), good}) column.Add(record);
  const Outcome outcome = RunBatch(key, CipherDirection::Decrypt, column, 1);
  EXPECT_EQ(outcome.results, (std::vector<Bytes>{BytesOf("good"), {}, {}, BytesOf("good")}));
  EXPECT_EQ(outcome.statuses, (std::vector<std::int32_t>{0, 1, 1, 0}));
}

INSTANTIATE_TEST_SUITE_P(Ciphers, RecordBatchTest, testing::Values(1, 2, 3, 4, 5));

TEST(RecordsTest, OffsetsThatDescendOrLeaveTheDataAreBad) {
  const auto isGood = [](std::vector<std::int32_t> offsets, std::size_t size) {
    const Bytes data(size);
    return latchkey::Records{offsets.size() - 1, Offsets(offsets.data()), data}.AreGood();
  };
  EXPECT_TRUE(isGood({0}, 0));
  EXPECT_TRUE(isGood({2, 2, 5}, 5));
  EXPECT_FALSE(isGood({0, 6}, 5));
  EXPECT_FALSE(isGood({3, 2, 5}, 5));
  EXPECT_FALSE(isGood({-1, 5}, 5));
  EXPECT_FALSE(isGood({0, 5, -5}, 5));
}

TEST(OnThreadsTest, EveryThreadRunsAndTheFirstExceptionIsRethrown) {
  std::atomic<int> calls{0};
  RunOnThreads(3, [&] { ++calls; });
  EXPECT_EQ(calls, 3);
  EXPECT_THROW(RunOnThreads(2, [] { throw std::runtime_error("x"); }), std::runtime_error);
  EXPECT_THROW(RunOnThreads(1, [] { throw std::runtime_error("x"); }), std::runtime_error);
  RunOnThreads(0, [&] { ++calls; });
  EXPECT_EQ(calls, 4);
}

}  // namespace
}  // namespace latchkey::test
