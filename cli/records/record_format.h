// A format of records: its scanner, and how it writes the one field that changes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "base/secure_memory.h"

namespace latchkey::cli {

using ByteSpan = std::span<const std::uint8_t>;

// A range of offsets in a block, which has fewer than 4 GiB.
struct BlockRange {
  std::uint32_t begin = 0;
  std::uint32_t end = 0;

  [[nodiscard]] ByteSpan Of(ByteSpan block) const noexcept {
    return block.subspan(begin, end - begin);
  }
};

// Value: the field has a value. Nothing: the field is missing or empty, and is left unchanged. Bad:
// the field cannot be read, and `fault` says why.
enum class FieldState : std::uint8_t { Value, Nothing, Bad };

// A record and its field, as ranges of the block.
struct ScannedRecord {
  BlockRange all;          // with the line end
  BlockRange source;       // the field's text, without quotes around it
  BlockRange target;       // the part that the result replaces; empty if the result is added
  std::uint32_t line = 0;  // the line on which the record begins; 0: the block's first line
  FieldState state = FieldState::Nothing;
  bool isQuoted = false;   // the field is in quotes
  bool isEscaped = false;  // the field contains escapes
  bool isAdded = false;    // the result is a new field at `target`
  const char* fault = nullptr;
};

// Scans and writes records. After ReadHeader it never changes, so any number of threads may use it.
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

  // Appends the text of an escaped source. Returns false for an invalid escape. A format without
  // escapes does not override this.
  [[nodiscard]] virtual bool Unescape(ByteSpan /*source*/, WipedBytes& /*text*/) const {
    return false;
  }

  // Appends the value as it is written in the place of the record's target. Returns false, and
  // appends nothing, if the format cannot hold the value.
  [[nodiscard]] virtual bool Write(ByteSpan value, const ScannedRecord& record,
                                   WipedBytes& output) const = 0;

  // Whether a record without a result also gets the added field, since all records must have the
  // same number of fields.
  [[nodiscard]] virtual bool AddsToEvery() const noexcept { return false; }

  // Appends what the format writes for no value, in the place of the record's target: nothing
  // without an override.
  virtual void WriteNothing(const ScannedRecord& /*record*/, WipedBytes& /*output*/) const {}
};

// The offset at which the text of a line ends, before CR LF or LF, and the offset of the next line.
struct LineEnd {
  std::size_t text = 0;
  std::size_t next = 0;
};
// The end of the line that begins at `begin`.
[[nodiscard]] LineEnd EndOfLine(ByteSpan bytes, std::size_t begin) noexcept;

// The offset of the first `byte` at or after `begin`, or the size of `bytes` without one.
[[nodiscard]] std::size_t Find(ByteSpan bytes, std::uint8_t byte, std::size_t begin = 0) noexcept;

// The range between two offsets in a block.
[[nodiscard]] constexpr BlockRange RangeOf(std::size_t begin, std::size_t end) noexcept {
  return {static_cast<std::uint32_t>(begin), static_cast<std::uint32_t>(end)};
}

// Appends `bytes` at the end of `to`.
void Append(ByteSpan bytes, WipedBytes& to);

}  // namespace latchkey::cli
