// Processes any number of records, in order, on all processors, in constant memory.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "cli/piece_relay.h"
#include "cli/records/block_transform.h"

namespace latchkey::cli {

// Source and destination of the records. `read` and `stopReading` are those of ByteStreams
// (cli/cipher_stream.h).
struct RecordStreams {
  std::function<std::size_t(std::span<std::uint8_t>)> read;
  std::function<void()> stopReading;
  // Writes the output for the next `consumed` bytes of input.
  std::function<void(ByteSpan text, std::size_t consumed)> write;
  // Reports the noted records of a block, after its output was written.
  std::function<void(const BlockResult& result)> report;
};

// The number of bytes that are read at a time.
inline constexpr std::size_t kRecordBlock = std::size_t{1} << 20;
// A longer record is a failure: most likely a quote is not closed.
inline constexpr std::size_t kLongestRecord = std::size_t{1} << 26;

// The number of threads for input of `size` bytes, which may be unknown.
[[nodiscard]] std::size_t RecordWorkers(std::optional<std::uint64_t> size);

// Runs the records of the whole input through the tools, one for each thread. Raises CommandError
// about `input` for a record that is too long and for a wrong header.
RecordCounts RunRecords(RecordFormat& format, std::vector<RecordTools> tools,
                        const RecordStreams& streams, const std::string& input,
                        std::size_t blockSize = kRecordBlock);

}  // namespace latchkey::cli
