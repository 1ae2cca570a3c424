// Transforms the field in the records of a block.
#pragma once

#include <cstdint>
#include <vector>

#include "cli/failure.h"
#include "cli/records/column_transform.h"
#include "cli/records/field_codec.h"
#include "cli/records/record_format.h"

namespace latchkey::cli {

// What to do with a record that fails: end the command, leave the record out, keep it unchanged, or
// write no value in its field.
enum class OnError { Stop, Skip, Keep, Null };

// A record that failed, or whose value was completed.
struct NotedRecord {
  std::uint64_t line = 0;        // from 1
  std::size_t missingBytes = 0;  // the bytes that were added to complete its value
  bool failed = false;
  Failure failure;
};

struct RecordCounts {
  std::uint64_t records = 0;
  std::uint64_t changed = 0;
  std::uint64_t failed = 0;
  std::uint64_t completed = 0;

  RecordCounts& operator+=(const RecordCounts& other) noexcept;
};

struct BlockResult {
  WipedBytes text;
  std::vector<NotedRecord> noted;
  RecordCounts counts;
  bool isStopped = false;  // the last noted record ends the work
};

// The parts that one thread uses; the format is shared.
struct RecordTools {
  const RecordFormat* format = nullptr;
  std::unique_ptr<FieldCodec> from;
  std::unique_ptr<FieldCodec> to;
  std::unique_ptr<ColumnTransform> transform;
  OnError onError = OnError::Stop;
};

// Transforms one block after another. Used by one thread. Its memory grows to that of the largest
// block.
class BlockTransform {
 public:
  explicit BlockTransform(RecordTools tools) noexcept : tools_(std::move(tools)) {}

  // Transforms a block of whole records. `firstLine` is the line of its first record, from 1.
  void Run(ByteSpan block, std::uint64_t firstLine, BlockResult& result);

 private:
  static constexpr std::size_t kNoValue = SIZE_MAX;

  void DecodeFields(ByteSpan block);
  [[nodiscard]] FieldFailure DecodeField(ByteSpan block, const ScannedRecord& record);
  void AddValue();
  void WriteRecords(ByteSpan block, std::uint64_t firstLine, BlockResult& result);
  [[nodiscard]] FieldFailure WriteRecord(ByteSpan block, std::size_t number, BlockResult& result);
  [[nodiscard]] FieldFailure FailureOf(std::size_t number);
  void WriteUnchanged(ByteSpan block, const ScannedRecord& record, WipedBytes& text) const;
  void WriteFailed(ByteSpan block, const ScannedRecord& record, WipedBytes& text) const;

  RecordTools tools_;
  std::vector<ScannedRecord> records_;
  std::vector<std::size_t> valueOf_;  // the number of each record's value, or kNoValue
  std::vector<std::pair<std::size_t, Failure>> undecoded_;  // each with its record's number
  std::size_t nextUndecoded_ = 0;
  WipedBytes unescaped_;
  WipedBytes values_;
  std::vector<std::int64_t> offsets_;
  std::vector<std::uint8_t> missing_;  // the number of bytes added to each value
  ColumnResult column_;
  WipedBytes encoded_;
};

}  // namespace latchkey::cli
