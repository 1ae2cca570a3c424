#include "cli/records/records_pipeline.h"

#include <algorithm>
#include <array>
#include <utility>

#include "cli/text_encoding.h"
#include "platform/processors.h"

namespace latchkey::cli {
namespace {

// The pieces under way are consecutive and at most one for each worker, so that each has a slot.
class RecordStages final : public PieceStages {
 public:
  RecordStages(RecordFormat& format, std::vector<RecordTools> tools, const RecordStreams& streams,
               std::size_t blockSize)
      : format_(format), streams_(streams), blockSize_(blockSize), slots_(tools.size()) {
    for (RecordTools& each : tools) transforms_.emplace_back(std::move(each));
  }

  [[nodiscard]] bool WorksInOrder() const noexcept override { return false; }
  void Read(StreamPiece& piece) override;
  void Work(StreamPiece& piece, std::size_t worker) override;
  void Write(const StreamPiece& piece) override;
  void StopReading() noexcept override { streams_.stopReading(); }

  [[nodiscard]] const RecordCounts& Counts() const noexcept { return counts_; }

 private:
  struct Slot {
    std::size_t begin = 0;  // of the records in the piece
    std::uint64_t line = 0;
    WipedBytes header;
    BlockResult result;
  };

  [[nodiscard]] Slot& SlotOf(const StreamPiece& piece) {
    return slots_[static_cast<std::size_t>(piece.number % slots_.size())];
  }

  void ReadWhole(StreamPiece& piece);
  [[nodiscard]] std::size_t ReadStart(ByteSpan bytes, WipedBytes& output);

  RecordFormat& format_;
  const RecordStreams& streams_;
  const std::size_t blockSize_;
  std::vector<Slot> slots_;
  std::vector<BlockTransform> transforms_;
  WipedBytes rest_;         // the start of a record that the next piece continues
  std::uint64_t line_ = 1;  // of the next record
  RecordCounts counts_;
};

// Reads until the piece contains a whole record.
void RecordStages::ReadWhole(StreamPiece& piece) {
  const std::size_t known = rest_.size();
  std::size_t count = known;
  piece.bytes.Renew(known + blockSize_);
  std::ranges::copy(rest_, piece.bytes.data());
  for (;;) {
    const std::span<std::uint8_t> room = piece.bytes.All().subspan(count);
    const std::size_t read = streams_.read(room);
    count += read;
    piece.isLast = read < room.size();
    const ByteSpan bytes = piece.bytes.All().first(count);
    piece.length = piece.isLast ? count : format_.LengthOfWhole(bytes);
    if (piece.length > 0 || piece.isLast) break;
    if (count >= kLongestRecord) {
      throw CommandError(
          Failure{.text = "a record is longer than 64 MiB, from line " + std::to_string(line_),
                  .hint = "a quoted field there may lack its closing quote"});
    }
    InlineBytes larger(std::min(2 * piece.bytes.size(), kLongestRecord));
    std::ranges::copy(bytes, larger.data());
    piece.bytes = std::move(larger);
  }
  piece.consumed = count - known;
  const ByteSpan bytes = piece.bytes.All().first(count);
  rest_.assign(bytes.begin() + static_cast<std::ptrdiff_t>(piece.length), bytes.end());
  if (piece.isLast && piece.number == 0) piece.bytes.LimitWipeTo(count);
}

// The header and what precedes it.
std::size_t RecordStages::ReadStart(ByteSpan bytes, WipedBytes& output) {
  if (BeginsWith(bytes, kUtf16Mark)) {
    throw CommandError(Failure{.text = "the records are UTF-16",
                               .hint = "convert them to UTF-8 first, for example with iconv"});
  }
  const std::size_t mark = BeginsWith(bytes, kUtf8Mark) ? kUtf8Mark.size() : 0;
  Append(bytes.first(mark), output);
  return mark + format_.ReadHeader(bytes.subspan(mark), output);
}

void RecordStages::Read(StreamPiece& piece) {
  ReadWhole(piece);
  Slot& slot = SlotOf(piece);
  const ByteSpan records = piece.bytes.All().first(piece.length);
  slot.header.clear();
  slot.begin = piece.number == 0 ? ReadStart(records, slot.header) : 0;
  const auto lines = [](ByteSpan bytes) {
    return static_cast<std::uint64_t>(std::ranges::count(bytes, '\n'));
  };
  slot.line = line_ + lines(records.first(slot.begin));
  line_ += lines(records);
}

void RecordStages::Work(StreamPiece& piece, std::size_t worker) {
  Slot& slot = SlotOf(piece);
  const ByteSpan records = piece.bytes.All().first(piece.length).subspan(slot.begin);
  transforms_[worker].Run(records, slot.line, slot.result);
}

void RecordStages::Write(const StreamPiece& piece) {
  const Slot& slot = SlotOf(piece);
  if (!slot.header.empty()) streams_.write(slot.header, 0);
  streams_.write(slot.result.text, piece.consumed);
  counts_ += slot.result.counts;
  if (!slot.result.noted.empty()) streams_.report(slot.result);
}

}  // namespace

std::size_t RecordWorkers(std::optional<std::uint64_t> size) {
  return size && *size <= kRecordBlock ? 1 : platform::UsableProcessors();
}

RecordCounts RunRecords(RecordFormat& format, std::vector<RecordTools> tools,
                        const RecordStreams& streams, const std::string& input,
                        std::size_t blockSize) {
  const std::size_t workers = tools.size();
  RecordStages stages(format, std::move(tools), streams, blockSize);
  try {
    PieceRelay(stages).Run(workers);
  } catch (const CommandError& error) {
    if (!error.Get().file.empty()) throw;
    Failure failure = error.Get();
    failure.file = input;
    throw CommandError(std::move(failure));
  }
  return stages.Counts();
}

}  // namespace latchkey::cli
