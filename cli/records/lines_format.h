// Records that are lines of one field.
#pragma once

#include "cli/records/record_format.h"

namespace latchkey::cli {

// A line ends in LF or CR LF, which is kept. An empty line has no value.
class LinesFormat final : public RecordFormat {
 public:
  void Scan(ByteSpan block, std::vector<ScannedRecord>& records) const override;
  [[nodiscard]] bool Write(ByteSpan value, const ScannedRecord& record,
                           WipedBytes& output) const override;
};

}  // namespace latchkey::cli
