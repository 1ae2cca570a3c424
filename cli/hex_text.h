// Hexadecimal digits as files and pipes contain them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

#include "base/hex_converter.h"
#include "base/secure_memory.h"
#include "cli/text_form.h"

namespace latchkey::cli {

// Appends the digits of the bytes, in upper case as the component writes them.
void AppendDigits(HexConverter& converter, std::span<const std::uint8_t> bytes, WipedBytes& digits);

// Appends the bytes of an even number of digits in either case. Returns false if another character
// is among them; what was appended is then meaningless.
[[nodiscard]] bool AppendBytes(HexConverter& converter, std::span<const std::uint8_t> digits,
                               WipedBytes& bytes);

// The digits of `bytes` in upper case.
[[nodiscard]] WipedBytes UpperHexOf(std::span<const std::uint8_t> bytes);

// The digits of `bytes` in lower case, as the md5sum family writes digests.
[[nodiscard]] std::string LowerHexOf(std::span<const std::uint8_t> bytes);

// Decodes digits. Skips white space anywhere, and 0x or \x before a byte or alone on a line.
class HexReader final : public TextReader {
 public:
  [[nodiscard]] WipedBytes Read(std::span<const std::uint8_t> text,
                                const std::string& file) override;
  void Finish(const std::string& file) const override;

 private:
  void Take(std::uint8_t character, const std::string& file, WipedBytes& bytes);
  void EndLine(const std::string& file);

  HexConverter converter_;
  std::uint8_t first_ = 0;  // the first digit of a byte whose second is still to come, or 0
  char mark_ = 0;           // the 0 or backslash of what may be 0x or \x
  bool isMarked_ = false;   // 0x or \x was read, and its byte is still to come
  bool lineIsEmpty_ = true;
  std::uint64_t position_ = 0;
};

// Encodes bytes as one line of digits in upper case.
class HexWriter final : public TextWriter {
 public:
  void Write(std::span<const std::uint8_t> bytes, WipedBytes& text) override;
  void Finish(WipedBytes& text) override;

 private:
  HexConverter converter_;
  bool isEmpty_ = true;
};

}  // namespace latchkey::cli
