// Comma-separated values (RFC 4180).
#pragma once

#include <optional>
#include <string>

#include "cli/records/record_format.h"

namespace latchkey::cli {

struct CsvOptions {
  std::string columnName;        // of the field, if it has no number
  std::size_t columnNumber = 0;  // from 1
  bool hasHeader = true;
  std::uint8_t delimiter = ',';
  std::optional<std::string> addedName;  // the result is added as the last column
};

// A quote begins and ends quoting wherever it is, as in PostgreSQL's COPY, so that line ends can be
// told from quoted ones without parsing; a field with a quote anywhere but around it is bad.
//
// An unquoted empty field is no value, as in COPY; "" is a value of no bytes. So is a field that a
// short row lacks. A blank line stays as it is, also where a column is added.
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
  // Fills in the record that begins there. Returns its number of lines.
  std::uint32_t ScanRecord(ByteSpan block, std::size_t begin, ScannedRecord& record) const noexcept;
  [[nodiscard]] std::vector<std::string> FieldsOf(ByteSpan record) const;
  void ChooseColumn(const std::vector<std::string>& names);
  [[nodiscard]] bool NeedsQuotes(ByteSpan value) const noexcept;
  void AppendField(ByteSpan value, bool quoted, WipedBytes& output) const;

  CsvOptions options_;
};

}  // namespace latchkey::cli
