// Pieces pass through the stages in order, and a failure is that of the earliest piece.
#include "cli/piece_relay.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <numeric>
#include <set>
#include <stdexcept>

#include "tests/support/signal.h"

namespace latchkey::cli::test {
namespace {

enum class Stage { None, Read, Work, Write };

// Records the relay's calls for a number of pieces, and fails or waits on request.
class NotedStages final : public PieceStages {
 public:
  explicit NotedStages(std::uint64_t pieces) : pieces_(pieces) {}

  Stage failingStage = Stage::None;
  std::set<std::uint64_t> failingPieces;
  // Reading this piece waits until reading is stopped, and the piece before it is not written
  // before that wait begins.
  std::uint64_t endlessRead = UINT64_MAX;
  bool worksInOrder = false;

  [[nodiscard]] bool WorksInOrder() const noexcept override { return worksInOrder; }

  void Read(StreamPiece& piece) override {
    const Alone alone(readers_);
    if (piece.number >= endlessRead) {
      waits_.Give();
      stopped_.Await();
    }
    piece.isLast = piece.number + 1 == pieces_;
    FailAt(Stage::Read, piece);
  }

  void Work(StreamPiece& piece, std::size_t worker) override {
    const std::lock_guard lock(mutex_);
    workers.insert(worker);
    order.push_back(piece.number);
    FailAt(Stage::Work, piece);
  }

  void Write(const StreamPiece& piece) override {
    const Alone alone(writers_);
    if (piece.number + 1 == endlessRead) waits_.Await();
    FailAt(Stage::Write, piece);
    written.push_back(piece.number);
  }

  void StopReading() noexcept override { stopped_.Give(); }

  std::vector<std::uint64_t> written;
  std::vector<std::uint64_t> order;  // of the calls of Work
  std::set<std::size_t> workers;

 private:
  // One call at a time.
  class Alone {
   public:
    explicit Alone(std::atomic<int>& count) : count_(count) { EXPECT_EQ(++count_, 1); }
    Alone(const Alone&) = delete;
    Alone& operator=(const Alone&) = delete;
    ~Alone() { --count_; }

   private:
    std::atomic<int>& count_;
  };

  void FailAt(Stage stage, const StreamPiece& piece) {
    if (stage != failingStage || !failingPieces.contains(piece.number)) return;
    throw std::runtime_error(std::to_string(piece.number));
  }

  const std::uint64_t pieces_;
  std::atomic<int> readers_ = 0;
  std::atomic<int> writers_ = 0;
  latchkey::test::Signal waits_;  // the endless read
  latchkey::test::Signal stopped_;
  std::mutex mutex_;
};

std::vector<std::uint64_t> Below(std::uint64_t end) {
  std::vector<std::uint64_t> numbers(static_cast<std::size_t>(end));
  std::iota(numbers.begin(), numbers.end(), 0);
  return numbers;
}

// The text of Run's exception; empty if it throws none.
std::string FailureOf(NotedStages& stages, std::size_t workers) {
  try {
    PieceRelay(stages).Run(workers);
    return {};
  } catch (const std::runtime_error& error) {
    return error.what();
  }
}

class PieceRelayTest : public testing::TestWithParam<std::size_t> {};

INSTANTIATE_TEST_SUITE_P(Workers, PieceRelayTest, testing::Values(1, 2, 3, 8));

TEST_P(PieceRelayTest, EveryPieceIsProcessedOnceAndWrittenInOrder) {
  for (const std::uint64_t pieces : {1U, 2U, 3U, 500U}) {
    for (const bool inOrder : {false, true}) {
      NotedStages stages(pieces);
      stages.worksInOrder = inOrder;
      EXPECT_EQ(FailureOf(stages, GetParam()), "");
      EXPECT_EQ(stages.written, Below(pieces));
      if (inOrder) {
        EXPECT_EQ(stages.order, Below(pieces));
      }
      std::ranges::sort(stages.order);
      EXPECT_EQ(stages.order, Below(pieces));
      EXPECT_LT(*stages.workers.rbegin(), GetParam());
    }
  }
}

TEST_P(PieceRelayTest, AFailureIsRaisedAfterTheEarlierPiecesAreWritten) {
  for (const Stage stage : {Stage::Read, Stage::Work, Stage::Write}) {
    for (const std::uint64_t failing : {0U, 1U, 7U, 39U}) {
      for (const bool inOrder : {false, true}) {
        NotedStages stages(40);
        stages.worksInOrder = inOrder;
        stages.failingStage = stage;
        stages.failingPieces = {failing, 39};
        EXPECT_EQ(FailureOf(stages, GetParam()), std::to_string(failing));
        EXPECT_EQ(stages.written, Below(failing));
      }
    }
  }
}

TEST_P(PieceRelayTest, AWaitingReadEndsWhenItsPieceIsNotNeeded) {
  const std::size_t workers = std::max<std::size_t>(GetParam(), 2);
  NotedStages stages(40);
  stages.endlessRead = 2;
  stages.failingStage = Stage::Write;
  stages.failingPieces = {1};
  EXPECT_EQ(FailureOf(stages, workers), "1");
  EXPECT_EQ(stages.written, Below(1));
}

// The first failure in time is not that of the earliest piece.
class LateFailure final : public PieceStages {
 public:
  [[nodiscard]] bool WorksInOrder() const noexcept override { return false; }
  void Read(StreamPiece& piece) override { piece.isLast = piece.number == 1; }
  void Work(StreamPiece& piece, std::size_t /*worker*/) override {
    if (piece.number == 0) {
      failed_.Await();
    } else {
      failed_.Give();
    }
    throw std::runtime_error(std::to_string(piece.number));
  }
  void Write(const StreamPiece& /*piece*/) override {}
  void StopReading() noexcept override {}

 private:
  latchkey::test::Signal failed_;
};

TEST(PieceRelayThreadTest, TheFailureOfTheEarliestPieceIsRaised) {
  LateFailure stages;
  try {
    PieceRelay(stages).Run(2);
    FAIL();
  } catch (const std::runtime_error& error) {
    EXPECT_STREQ(error.what(), "0");
  }
}

}  // namespace
}  // namespace latchkey::cli::test
