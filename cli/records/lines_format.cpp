#include "cli/records/lines_format.h"

namespace latchkey::cli {

void LinesFormat::Scan(ByteSpan block, std::vector<ScannedRecord>& records) const {
  std::uint32_t line = 0;
  for (std::size_t begin = 0; begin < block.size();) {
    const LineEnd end = EndOfLine(block, begin);
    ScannedRecord& record = records.emplace_back();
    record.all = RangeOf(begin, end.next);
    record.source = record.target = RangeOf(begin, end.text);
    record.line = line++;
    if (end.text > begin) record.state = FieldState::Value;
    begin = end.next;
  }
}

bool LinesFormat::Write(ByteSpan value, const ScannedRecord& /*record*/, WipedBytes& output) const {
  const bool fits = Find(value, '\n') == value.size() && (value.empty() || value.back() != '\r');
  if (fits) Append(value, output);
  return fits;
}

}  // namespace latchkey::cli
