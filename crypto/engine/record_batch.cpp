#include "crypto/engine/record_batch.h"

#include <algorithm>
#include <atomic>
#include <cstring>
#include <utility>

#include "base/checked_arithmetic.h"
#include "crypto/engine/on_threads.h"
#include "platform/processors.h"

namespace latchkey {
namespace {

// Enough that taking a chunk costs little; few enough that threads share small batches.
constexpr std::size_t kChunkRecords = 1024;

}  // namespace

bool Records::AreGood() const noexcept {
  std::int64_t before = 0;
  for (std::size_t i = 0; i <= count; ++i) {
    const std::int64_t offset = offsets.Get(i);
    if (offset < before) return false;
    before = offset;
  }
  return static_cast<std::uint64_t>(before) <= data.size();
}

RecordBatch::RecordBatch(const DerivedKey& key, CipherDirection direction, const Records& records)
    : key_(key), direction_(direction), records_(records) {
  chunks_.reserve(records.count / kChunkRecords + 1);
  for (std::size_t i = 0; i < records.count; ++i) {
    if (i % kChunkRecords == 0) chunks_.push_back({roomNeeded_});
    roomNeeded_ = NarrowTo<std::size_t>(std::uint64_t{roomNeeded_} + RoomFor(records[i].size()));
  }
}

std::uint32_t RecordBatch::RoomFor(std::size_t recordLength) const noexcept {
  const std::uint64_t room = key_.RoomFor(direction_, recordLength);
  return std::in_range<std::uint32_t>(room) ? static_cast<std::uint32_t>(room) : 0;
}

void RecordBatch::Run(std::size_t threads, const Results& results) {
  const std::size_t wanted = threads != 0 ? threads : platform::UsableProcessors();
  std::atomic<std::size_t> next{0};
  WipeUnlessKept wipe(results.data);
  RunOnThreads(std::min(wanted, chunks_.size()), [&] {
    for (std::size_t number = next++; number < chunks_.size(); number = next++) {
      RunChunk(number, results);
    }
  });
  wipe.Keep();
  JoinChunks(results);
}

// Each result directly follows the one before it, even if that is shorter than its room.
void RecordBatch::RunChunk(std::size_t number, const Results& results) {
  Chunk chunk = chunks_[number];
  const std::size_t first = number * kChunkRecords;
  const std::size_t end = std::min(first + kChunkRecords, records_.count);
  for (std::size_t i = first; i < end; ++i) {
    const auto record = records_[i];
    std::uint32_t length = 0;
    const RecordStatus status = RunRecord(
        record, results.data.subspan(chunk.start + chunk.length, RoomFor(record.size())), length);
    if (!results.statuses.empty()) results.statuses[i] = results.codes.Of(status);
    if (status != RecordStatus::Done && chunk.failed++ == 0) chunk.firstFailure = status;
    chunk.length += length;
    results.offsets.Set(i + 1, chunk.length);
  }
  chunks_[number] = chunk;
}

RecordStatus RecordBatch::RunRecord(std::span<const std::uint8_t> record,
                                    std::span<std::uint8_t> room, std::uint32_t& length) const {
  if (room.size() < record.size()) return RecordStatus::TooLong;
  std::copy(record.begin(), record.end(), room.begin());
  length = static_cast<std::uint32_t>(record.size());
  if (key_.Transform(direction_, room, length)) return RecordStatus::Done;
  length = 0;
  return RecordStatus::CipherFailed;
}

// Closes the gaps between the results of the chunks.
void RecordBatch::JoinChunks(const Results& results) noexcept {
  results.offsets.Set(0, 0);
  for (std::size_t number = 0; number < chunks_.size(); ++number) {
    const Chunk& chunk = chunks_[number];
    if (chunk.length > 0) {
      std::memmove(&results.data[length_], &results.data[chunk.start], chunk.length);
    }
    const std::size_t end = std::min((number + 1) * kChunkRecords, records_.count);
    for (std::size_t i = number * kChunkRecords; length_ > 0 && i < end; ++i) {
      results.offsets.Set(i + 1, length_ + static_cast<std::size_t>(results.offsets.Get(i + 1)));
    }
    length_ += chunk.length;
    if (failed_ == 0) firstFailure_ = chunk.firstFailure;
    failed_ += chunk.failed;
  }
  const auto rest = results.data.subspan(length_);
  SecureWipe(rest.data(), rest.size());
}

}  // namespace latchkey
