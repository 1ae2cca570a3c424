// A format of records: its scanner, and how it writes the one field that changes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "base/secure_memory.h"

namespace latchkey::cli {

using ByteSpan = std::span<const std::uint8_t>;

// A block has fewer than 4 GiB.
struct BlockRange {
  std::uint32_t begin = 0;
  std::uint32_t end = 0;

  [[nodiscard]] ByteSpan Of(ByteSpan block) const noexcept {
    return block.subspan(begin, end - begin);
  }
};

// Nothing: the field is missing or empty, and stays so. Bad: `fault` says why it cannot be read.
enum class FieldState : std::uint8_t { Value, Nothing, Bad };

struct ScannedRecord {
  BlockRange all;          // with the line end
  BlockRange source;       // the field's text, without quotes around it
  BlockRange target;       // what the result replaces; empty if it is added
  std::uint32_t line = 0;  // where the record begins, from 0 for the block's first line
  FieldState state = FieldState::Nothing;
  bool isQuoted = false;   // in quotes
  bool isEscaped = false;  // contains escapes
  bool isAdded = false;    // the result is a new field at `target`
  const char* fault = nullptr;
};

// After ReadHeader it never changes: any number of threads may scan at once.
class RecordFormat {
 public:
  RecordFormat() = default;
  RecordFormat(const RecordFormat&) = delete;
  RecordFormat& operator=(const RecordFormat&) = delete;
  virtual ~RecordFormat() = default;

  // The length of the whole records at the start of bytes that begin with a record; 0 for none.
  // Without an override, records are lines.
  [[nodiscard]] virtual std::size_t LengthOfWhole(ByteSpan bytes) const noexcept;

  // Reads the header that the input begins with, and appends the header of the output. Returns the
  // header's length in the input. Raises CommandError if the field is not in it.
  [[nodiscard]] virtual std::size_t ReadHeader(ByteSpan bytes, WipedBytes& output);

  // Appends the records of a block. The last one needs no line end.
  virtual void Scan(ByteSpan block, std::vector<ScannedRecord>& records) const = 0;

  // Appends the text that an escaped source means. False for a wrong escape.
  [[nodiscard]] virtual bool Unescape(ByteSpan source, WipedBytes& text) const = 0;

  // Appends a value in the place of the record's target. False, and nothing appended, if the format
  // cannot hold that value.
  [[nodiscard]] virtual bool Write(ByteSpan value, const ScannedRecord& record,
                                   WipedBytes& output) const = 0;

  // Whether a record without a result gets the added field too, since all must have the same
  // number.
  [[nodiscard]] virtual bool AddsToEvery() const noexcept { return false; }

  // Appends what means no value, in the same place.
  virtual void WriteNothing(const ScannedRecord& record, WipedBytes& output) const = 0;
};

// Where the text of the line that begins at `begin` ends, without CR LF or LF, and where the next
// line begins.
struct LineEnd {
  std::size_t text = 0;
  std::size_t next = 0;
};
[[nodiscard]] LineEnd EndOfLine(ByteSpan bytes, std::size_t begin) noexcept;

// The offset of the first `byte` at or after `begin`, or the size of `bytes` without one.
[[nodiscard]] std::size_t Find(ByteSpan bytes, std::uint8_t byte, std::size_t begin = 0) noexcept;

// The range between two offsets in a block.
[[nodiscard]] constexpr BlockRange RangeOf(std::size_t begin, std::size_t end) noexcept {
  return {static_cast<std::uint32_t>(begin), static_cast<std::uint32_t>(end)};
}

void Append(ByteSpan bytes, WipedBytes& to);

}  // namespace latchkey::cli
