#include "crypto/engine/record_batch.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cstring>
#include <memory>
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

struct RecordBatch::Work {
  std::array<std::uint32_t, kChunkRecords> lengths{};
  std::array<bool, kChunkRecords> failed{};
};

RecordBatch::RecordBatch(const DerivedKey& key, CipherDirection direction, const Records& records)
    : key_(key), direction_(direction), records_(records) {
  chunks_.reserve(records.count / kChunkRecords + 1);
  for (std::size_t first = 0; first < records.count; first += kChunkRecords) {
    const std::size_t end = std::min(first + kChunkRecords, records.count);
    Chunk& chunk = chunks_.emplace_back(Chunk{roomNeeded_});
    const std::uint64_t room = RoomForAll(first, end);
    chunk.room = NarrowTo<std::size_t>(room);
    roomNeeded_ = NarrowTo<std::size_t>(std::uint64_t{roomNeeded_} + room);
  }
}

std::uint32_t RecordBatch::RoomFor(std::size_t recordLength) const noexcept {
  const std::uint64_t room = key_.RoomFor(direction_, recordLength);
  return std::in_range<std::uint32_t>(room) ? static_cast<std::uint32_t>(room) : 0;
}

// Without padding, the room is the sum of the lengths, unless a record may be too long.
std::uint64_t RecordBatch::RoomForAll(std::size_t first, std::size_t end) const noexcept {
  const std::size_t length = records_.Between(first, end).size();
  if (RoomFor(length) == length) return length;
  std::uint64_t room = 0;
  for (std::size_t i = first; i < end; ++i) room += RoomFor(records_[i].size());
  return room;
}

// Returns `end` if every record fits.
std::size_t RecordBatch::FirstTooLong(std::size_t first, std::size_t end) const noexcept {
  if (RoomFor(records_.Between(first, end).size()) > 0) return end;
  while (first < end && RoomFor(records_[first].size()) >= records_[first].size()) ++first;
  return first;
}

// A single thread writes the results of each chunk directly after those of the chunk before.
void RecordBatch::Run(std::size_t threads, const Results& results) {
  const std::size_t wanted = threads != 0 ? threads : platform::UsableProcessors();
  const std::size_t used = std::min(wanted, chunks_.size());
  std::atomic<std::size_t> next{0};
  WipeUnlessKept wipe(results.data);
  RunOnThreads(used, [&] {
    const auto work = std::make_unique<Work>();
    for (std::size_t number = next++; number < chunks_.size(); number = next++) {
      if (used == 1 && number > 0) chunks_[number].start = chunks_[number - 1].End();
      RunChunk(number, results, *work);
    }
  });
  wipe.Keep();
  JoinChunks(results);
}

// Each result directly follows the one before it, even if that is shorter than its room.
void RecordBatch::RunChunk(std::size_t number, const Results& results, Work& work) {
  Chunk& chunk = chunks_[number];
  const std::size_t end = std::min((number + 1) * kChunkRecords, records_.count);
  for (std::size_t i = number * kChunkRecords; i < end; ++i) {
    const std::size_t tooLong = FirstTooLong(i, end);
    RunRecords(i, tooLong, chunk, results, work);
    i = tooLong;
    if (i == end) break;
    NoteStatus(i, RecordStatus::TooLong, chunk, results);
    results.offsets.Set(i + 1, chunk.End());
  }
}

void RecordBatch::RunRecords(std::size_t first, std::size_t end, Chunk& chunk,
                             const Results& results, Work& work) const {
  const auto lengths = std::span(work.lengths).first(end - first);
  const auto failed = std::span(work.failed).first(end - first);
  records_.offsets.GetLengths(first, lengths);
  key_.TransformEach(direction_,
                     {records_.Between(first, end), lengths,
                      results.data.subspan(chunk.End(), chunk.room - chunk.length), failed});
  chunk.length = results.offsets.SetEnds(first, chunk.End(), lengths) - chunk.start;
  if (results.statuses.empty() && std::ranges::find(failed, true) == failed.end()) return;
  for (std::size_t i = 0; i < failed.size(); ++i) {
    NoteStatus(first + i, failed[i] ? RecordStatus::CipherFailed : RecordStatus::Done, chunk,
               results);
  }
}

void RecordBatch::NoteStatus(std::size_t record, RecordStatus status, Chunk& chunk,
                             const Results& results) {
  if (!results.statuses.empty()) results.statuses[record] = results.codes.Of(status);
  if (status != RecordStatus::Done && chunk.failed++ == 0) chunk.firstFailure = status;
}

// Closes the gaps between the results of the chunks.
void RecordBatch::JoinChunks(const Results& results) noexcept {
  results.offsets.Set(0, 0);
  for (std::size_t number = 0; number < chunks_.size(); ++number) {
    const Chunk& chunk = chunks_[number];
    if (chunk.length > 0 && length_ != chunk.start) {
      std::memmove(&results.data[length_], &results.data[chunk.start], chunk.length);
    }
    const std::size_t end = std::min((number + 1) * kChunkRecords, records_.count);
    for (std::size_t i = number * kChunkRecords; length_ != chunk.start && i < end; ++i) {
      const auto offset = static_cast<std::size_t>(results.offsets.Get(i + 1));
      results.offsets.Set(i + 1, offset - chunk.start + length_);
    }
    length_ += chunk.length;
    if (failed_ == 0) firstFailure_ = chunk.firstFailure;
    failed_ += chunk.failed;
  }
  const auto rest = results.data.subspan(length_);
  SecureWipe(rest.data(), rest.size());
}

}  // namespace latchkey
