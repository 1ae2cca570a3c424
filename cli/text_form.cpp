#include "cli/text_form.h"

#include <array>

#include "cli/hex_text.h"

namespace latchkey::cli {

bool IsTextSpace(std::uint8_t character) noexcept {
  return character == ' ' || (character >= '\t' && character <= '\r');
}

CommandError WrongCharacter(const char* refusal, std::uint8_t character, std::uint64_t position,
                            const std::string& file, const char* hint) {
  const bool isVisible = character > ' ' && character < 0x7F;
  const std::array code{character};
  return CommandError(
      Failure{.text = std::string(refusal) + ": " +
                      (isVisible ? "'" + std::string(1, static_cast<char>(character)) + "'"
                                 : "byte " + LowerHexOf(code)) +
                      " at position " + std::to_string(position),
              .file = file,
              .hint = hint});
}

std::span<std::uint8_t> ExtendBy(std::size_t count, WipedBytes& bytes) {
  bytes.resize(bytes.size() + count);
  return std::span(bytes).last(count);
}

}  // namespace latchkey::cli
