#include "cli/ciphertext_sample.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include "cli/failure.h"
#include "cli/hex_text.h"
#include "cli/progress.h"

namespace latchkey::cli {
namespace {

constexpr std::size_t kPiece = std::size_t{1} << 18;

// Keeps the last bytes of those read so far.
void AddToTail(std::vector<std::uint8_t>& tail, std::span<const std::uint8_t> bytes) {
  const auto last = bytes.last(std::min(bytes.size(), CiphertextSample::kTailLength));
  tail.insert(tail.end(), last.begin(), last.end());
  const std::size_t kept = std::min(tail.size(), CiphertextSample::kTailLength);
  tail.erase(tail.begin(), tail.end() - static_cast<std::ptrdiff_t>(kept));
}

std::string_view Trimmed(std::string_view line) {
  constexpr std::string_view kAround = " \t\r\"";
  const std::size_t first = line.find_first_not_of(kAround);
  if (first == std::string_view::npos) return {};
  return line.substr(first, line.find_last_not_of(kAround) - first + 1);
}

// COPY of PostgreSQL doubles the backslash of \x.
std::string_view DigitsOf(std::string_view line) {
  return line.substr(line.starts_with("\\\\x") ? 1 : 0);
}

CommandError NotHexadecimal(const std::string& file, std::uint64_t line) {
  return CommandError(
      Failure{.text = "line " + std::to_string(line) + " is not a record of hexadecimal digits",
              .file = file});
}

// Nothing for other characters and for half a byte.
std::optional<WipedBytes> Decoded(std::string_view digits, const std::string& file) {
  try {
    HexReader reader;
    WipedBytes bytes = reader.Read(std::vector<std::uint8_t>(digits.begin(), digits.end()), file);
    reader.Finish(file);
    return bytes;
  } catch (const CommandError&) {
    return std::nullopt;
  }
}

SampleBytes RecordOf(std::span<const std::uint8_t> bytes) {
  const CiphertextSample sample = CiphertextSample::Of(bytes);
  SampleBytes record;
  record.head.assign(sample.head.begin(), sample.head.end());
  record.tail.assign(sample.tail.begin(), sample.tail.end());
  record.length = sample.length;
  return record;
}

void AddRecord(std::string_view line, const std::string& file, std::uint64_t number,
               std::vector<SampleBytes>& records) {
  const std::string_view digits = DigitsOf(Trimmed(line));
  if (digits.empty()) return;
  const std::optional<WipedBytes> bytes = Decoded(digits, file);
  if (!bytes) throw NotHexadecimal(file, number);
  records.push_back(RecordOf(*bytes));
  records.back().file = file;
  records.back().line = number;
}

}  // namespace

SampleBytes ReadSample(InputFile& input, DataForm form, bool quiet, std::size_t longestHead) {
  Progress progress(input.Size(), quiet);
  DataReader data(input, form, [&](std::size_t bytes) { progress.Advance(bytes); });
  SampleBytes sample;
  sample.file = input.Name();
  sample.head.resize(longestHead);
  sample.head.resize(data.Read(sample.head));
  sample.length = sample.head.size();
  AddToTail(sample.tail, sample.head);
  std::vector<std::uint8_t> piece(kPiece);
  while (const std::size_t count = data.Read(piece)) {
    sample.length += count;
    AddToTail(sample.tail, std::span(piece).first(count));
  }
  return sample;
}

void ReadRecords(InputFile& input, std::size_t most, std::vector<SampleBytes>& records) {
  std::vector<std::uint8_t> piece(kPiece);
  std::string line;
  std::uint64_t number = 0;
  while (const std::size_t count = input.Read(piece)) {
    for (const std::uint8_t byte : std::span(piece).first(count)) {
      if (byte != '\n') {
        line += static_cast<char>(byte);
        continue;
      }
      AddRecord(line, input.Name(), ++number, records);
      line.clear();
      if (records.size() >= most) return;
    }
  }
  AddRecord(line, input.Name(), ++number, records);
}

}  // namespace latchkey::cli
