// Comma-separated values (RFC 4180).
#pragma once

#include <optional>
#include <string>

#include "cli/records/record_format.h"

namespace latchkey::cli {

struct CsvOptions {
  std::string columnName;        // used if columnNumber is 0
  std::size_t columnNumber = 0;  // from 1; 0: the column has a name
  bool hasHeader = true;
  std::uint8_t delimiter = ',';
  std::optional<std::string> addedName;  // of a column to add; nothing: replace the field
};

// Every quote begins or ends quoting, as in PostgreSQL's COPY: counting quotes is enough to find
// the ends of records. A field with a quote that neither surrounds it nor is doubled is bad.
//
// As in COPY, an unquoted empty field has no value, and "" is a value of no bytes. A field that is
// missing from a short row has no value either. Blank lines stay unchanged and get no added column.
class CsvFormat final : public RecordFormat {
 public:
  explicit CsvFormat(CsvOptions options);

  [[nodiscard]] std::size_t LengthOfWhole(ByteSpan bytes) const noexcept override;
  [[nodiscard]] std::size_t ReadHeader(ByteSpan bytes, WipedBytes& output) override;
  void Scan(ByteSpan block, std::vector<ScannedRecord>& records) const override;
  [[nodiscard]] bool Unescape(ByteSpan source, WipedBytes& text) const override;
  [[nodiscard]] bool Write(ByteSpan value, const ScannedRecord& record,
                           WipedBytes& output) const override;
  [[nodiscard]] bool AddsToEvery() const noexcept override { return true; }
  void WriteNothing(const ScannedRecord& record, WipedBytes& output) const override;

 private:
  // A field up to its delimiter or line end, or to the end of the bytes.
  struct Field {
    std::size_t end = 0;
    std::size_t quotes = 0;
    std::uint32_t lines = 0;  // line ends inside quotes

    [[nodiscard]] bool IsOpen() const noexcept { return quotes % 2 != 0; }
  };

  [[nodiscard]] Field ScanField(ByteSpan bytes, std::size_t begin) const noexcept;
  // Fills in the record that begins at `begin`. Returns its number of lines.
  std::uint32_t ScanRecord(ByteSpan block, std::size_t begin, ScannedRecord& record) const noexcept;
  [[nodiscard]] std::vector<std::string> FieldsOf(ByteSpan record) const;
  void ChooseColumn(const std::vector<std::string>& names);
  [[nodiscard]] bool NeedsQuotes(ByteSpan value) const noexcept;
  void AppendField(ByteSpan value, bool quoted, WipedBytes& output) const;

  CsvOptions options_;
};

}  // namespace latchkey::cli
