// Text forms of bytes, such as hexadecimal digits, read and written in pieces.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

#include "base/secure_memory.h"
#include "cli/failure.h"

namespace latchkey::cli {

// Decodes a text that arrives in pieces. Used by one thread.
class TextReader {
 public:
  TextReader() = default;
  TextReader(const TextReader&) = delete;
  TextReader& operator=(const TextReader&) = delete;
  virtual ~TextReader() = default;

  // Returns the bytes that the text so far completes. Raises CommandError, about `file`, at the
  // first wrong character.
  [[nodiscard]] virtual WipedBytes Read(std::span<const std::uint8_t> text,
                                        const std::string& file) = 0;

  // Raises CommandError if the text ends within a byte or a group of characters.
  virtual void Finish(const std::string& file) const = 0;
};

// Encodes bytes that arrive in pieces. Used by one thread.
class TextWriter {
 public:
  TextWriter() = default;
  TextWriter(const TextWriter&) = delete;
  TextWriter& operator=(const TextWriter&) = delete;
  virtual ~TextWriter() = default;

  // Appends the text of the bytes to `text`; may keep the last of them for the next call.
  virtual void Write(std::span<const std::uint8_t> bytes, WipedBytes& text) = 0;

  // Appends the text of the bytes that were kept. The complete text ends with a line end, or is
  // empty.
  virtual void Finish(WipedBytes& text) = 0;
};

// Whether the character is white space in ASCII.
[[nodiscard]] bool IsTextSpace(std::uint8_t character) noexcept;

// The failure "`refusal`: 'x' at position 7". Positions count from 1.
[[nodiscard]] CommandError WrongCharacter(const char* refusal, std::uint8_t character,
                                          std::uint64_t position, const std::string& file,
                                          const char* hint);

// Makes room for `count` more bytes at the end, and returns it.
[[nodiscard]] std::span<std::uint8_t> ExtendBy(std::size_t count, WipedBytes& bytes);

}  // namespace latchkey::cli
