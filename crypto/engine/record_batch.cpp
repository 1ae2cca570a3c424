#include "crypto/engine/record_batch.h"

#include <algorithm>
#include <atomic>
#include <cstring>
#include <limits>

#include "crypto/engine/on_threads.h"
#include "platform/processors.h"
#include "provider/block_size.h"

namespace latchkey {
namespace {

// Enough to make taking a chunk cheap, few enough to share small batches.
constexpr std::size_t kChunkRecords = 1024;

constexpr std::size_t kLongestRecord =
    std::numeric_limits<std::uint32_t>::max() - provider::kBlockSize;

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
    roomNeeded_ += RoomFor(records[i].size());
  }
}

std::size_t RecordBatch::RoomFor(std::size_t recordLength) const noexcept {
  return direction_ == CipherDirection::Encrypt ? key_.EncryptedLength(recordLength) : recordLength;
}

void RecordBatch::Run(std::size_t threads, const Results& results) {
  const std::size_t wanted = threads != 0 ? threads : platform::UsableProcessors();
  std::atomic<std::size_t> next{0};
  RunOnThreads(std::min(wanted, chunks_.size()), [&] {
    for (std::size_t number = next++; number < chunks_.size(); number = next++) {
      RunChunk(number, results);
    }
  });
  JoinChunks(results);
}

// Each result is followed by the next one, so it may be written where its record's room ends later.
void RecordBatch::RunChunk(std::size_t number, const Results& results) {
  Chunk& chunk = chunks_[number];
  const std::size_t first = number * kChunkRecords;
  const std::size_t end = std::min(first + kChunkRecords, records_.count);
  for (std::size_t i = first; i < end; ++i) {
    const auto record = records_[i];
    std::uint32_t length = 0;
    const RecordStatus status = RunRecord(
        record, results.data.subspan(chunk.start + chunk.length, RoomFor(record.size())), length);
    if (!results.statuses.empty()) results.statuses[i] = status;
    if (status != RecordStatus::Done && chunk.failed++ == 0) chunk.firstFailure = status;
    chunk.length += length;
    results.offsets.Set(i + 1, chunk.length);
  }
}

RecordStatus RecordBatch::RunRecord(std::span<const std::uint8_t> record,
                                    std::span<std::uint8_t> room, std::uint32_t& length) const {
  if (record.size() > kLongestRecord) return RecordStatus::TooLong;
  std::copy(record.begin(), record.end(), room.begin());
  length = static_cast<std::uint32_t>(record.size());
  if (key_.Transform(direction_, room, length)) return RecordStatus::Done;
  length = 0;
  return RecordStatus::CipherFailed;
}

// Moves the chunks' results together.
void RecordBatch::JoinChunks(const Results& results) noexcept {
  results.offsets.Set(0, 0);
  for (std::size_t number = 0; number < chunks_.size(); ++number) {
    const Chunk& chunk = chunks_[number];
    std::memmove(results.data.data() + length_, results.data.data() + chunk.start, chunk.length);
    const std::size_t end = std::min((number + 1) * kChunkRecords, records_.count);
    for (std::size_t i = number * kChunkRecords; length_ > 0 && i < end; ++i) {
      results.offsets.Set(i + 1, length_ + static_cast<std::size_t>(results.offsets.Get(i + 1)));
    }
    length_ += chunk.length;
    if (failed_ == 0) firstFailure_ = chunk.firstFailure;
    failed_ += chunk.failed;
  }
  SecureWipe(results.data.data() + length_, roomNeeded_ - length_);
}

}  // namespace latchkey
