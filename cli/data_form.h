// The data of a command as bytes, hexadecimal digits or Base64.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "cli/platform/input_file.h"
#include "cli/text_form.h"

namespace latchkey::cli {

enum class DataForm { Bytes, Hex, Base64 };

[[nodiscard]] const std::vector<std::string>& TextFormNames();  // hex, base64

// The form of a name of TextFormNames; Bytes for an empty name.
[[nodiscard]] DataForm DataFormOf(const std::string& name);

// Reads the bytes of a file that is in one of the forms. Used by one thread at a time.
class DataReader {
 public:
  // Calls `advance` with the length of each part of the file that was read.
  DataReader(InputFile& file, DataForm form, std::function<void(std::size_t)> advance);

  // Fills the span; returns fewer bytes only at the end, or when the file was stopped. Raises
  // FileError, and CommandError for a text that is not in the form.
  [[nodiscard]] std::size_t Read(std::span<std::uint8_t> bytes);

 private:
  [[nodiscard]] std::size_t ReadFile(std::span<std::uint8_t> bytes);
  void Decode();

  InputFile& file_;
  const std::function<void(std::size_t)> advance_;
  const std::unique_ptr<TextReader> reader_;  // null: bytes
  WipedBytes text_;
  WipedBytes decoded_;
  std::size_t given_ = 0;  // bytes of `decoded_` that were returned
  bool hasEnded_ = false;
};

// Writes bytes in one of the forms. Used by one thread at a time.
class DataWriter {
 public:
  // `write` gets the bytes or the text, in parts.
  DataWriter(DataForm form, std::function<void(std::span<const std::uint8_t>)> write);

  void Write(std::span<const std::uint8_t> bytes);

  // Writes the end of the text. Call it once, after the last Write.
  void Finish();

 private:
  const std::function<void(std::span<const std::uint8_t>)> write_;
  const std::unique_ptr<TextWriter> writer_;  // null: bytes
  WipedBytes text_;
};

}  // namespace latchkey::cli
