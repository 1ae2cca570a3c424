// JSON Lines: an object in each line.
#pragma once

#include <optional>
#include <string>

#include "cli/records/record_format.h"

namespace latchkey::cli {

// Finds the value of a member of the outermost object, the last one of that name, as other readers
// do. Everything else stays as it was written, and is checked only as far as is needed to find the
// value. null and a missing member have no value; "" is a value of no bytes. With `addedName` the
// result replaces the value of that member or, if it is missing, is added as the last member.
class JsonFormat final : public RecordFormat {
 public:
  JsonFormat(std::string field, const std::optional<std::string>& addedName);

  void Scan(ByteSpan block, std::vector<ScannedRecord>& records) const override;
  [[nodiscard]] bool Unescape(ByteSpan source, WipedBytes& text) const override;
  [[nodiscard]] bool Write(ByteSpan value, const ScannedRecord& record,
                           WipedBytes& output) const override;
  void WriteNothing(const ScannedRecord& record, WipedBytes& output) const override;

 private:
  void ScanObject(ByteSpan line, std::uint32_t begin, ScannedRecord& record) const;
  void WriteName(const ScannedRecord& record, WipedBytes& output) const;

  std::string field_;
  std::string added_;    // the member for the result; empty: the field
  WipedBytes addition_;  // what precedes an added value
};

}  // namespace latchkey::cli
