// Base64 (RFC 4648, section 4) as files and pipes contain it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

#include "base/secure_memory.h"
#include "cli/text_form.h"

namespace latchkey::cli {

// Appends the Base64 text of the bytes, with padding and without line ends.
void EncodeBase64Text(std::span<const std::uint8_t> bytes, WipedBytes& text);

// Decodes Base64 with padding and without white space, and appends the bytes. Returns false, and
// appends nothing, for any other text.
[[nodiscard]] bool DecodeBase64Text(std::span<const std::uint8_t> text, WipedBytes& bytes);

// Decodes Base64 with padding. Skips white space anywhere.
class Base64Reader final : public TextReader {
 public:
  [[nodiscard]] WipedBytes Read(std::span<const std::uint8_t> text,
                                const std::string& file) override;
  void Finish(const std::string& file) const override;

 private:
  void Take(std::uint8_t character, const std::string& file);

  WipedBytes characters_;  // not decoded yet
  std::uint64_t position_ = 0;
  bool hasPadding_ = false;
};

// Encodes bytes as lines of 76 characters, as base64(1) does.
class Base64Writer final : public TextWriter {
 public:
  void Write(std::span<const std::uint8_t> bytes, WipedBytes& text) override;
  void Finish(WipedBytes& text) override;

 private:
  WipedBytes line_;  // the bytes of a line that is not complete yet
};

}  // namespace latchkey::cli
