#include "platform/linux/character_converter.h"

#include <array>
#include <cstddef>

namespace latchkey::platform {
namespace {

constexpr const char* kCharacters = "UTF-16LE";

using Buffer = std::array<char, 16>;

// The number of bytes written; 0 unless all input is converted without loss. Some encodings hold a
// character back until the next one or the end.
std::size_t Convert(iconv_t descriptor, std::span<const char> from, Buffer& to) {
  static_cast<void>(iconv(descriptor, nullptr, nullptr, nullptr, nullptr));
  char* input = const_cast<char*>(from.data());  // NOLINT(*-const-cast): iconv does not write there
  std::size_t inputLeft = from.size();
  char* output = to.data();
  std::size_t outputLeft = to.size();
  if (iconv(descriptor, &input, &inputLeft, &output, &outputLeft) != 0) return 0;
  if (iconv(descriptor, nullptr, nullptr, &output, &outputLeft) != 0) return 0;
  return to.size() - outputLeft;
}

}  // namespace

CharacterConverter::CharacterConverter(const char* encoding)
    : decoder_(iconv_open(kCharacters, encoding)), encoder_(iconv_open(encoding, kCharacters)) {}

bool CharacterConverter::IsAvailable() const noexcept {
  return static_cast<bool>(decoder_) && static_cast<bool>(encoder_);
}

char16_t CharacterConverter::CharacterOf(std::uint32_t code) const {
  std::array<char, 4> bytes{};
  std::size_t first = bytes.size();
  do {
    bytes.at(--first) = static_cast<char>(code & 0xFF);
    code >>= 8;
  } while (code != 0);
  Buffer characters{};
  if (Convert(decoder_.Get(), std::span(bytes).subspan(first), characters) != 2) return 0;
  return static_cast<char16_t>(static_cast<unsigned char>(characters[0]) |
                               static_cast<unsigned char>(characters[1]) << 8);
}

std::uint32_t CharacterConverter::CodeOf(char16_t character) const {
  const std::array<char, 2> bytes{static_cast<char>(character & 0xFF),
                                  static_cast<char>(character >> 8)};
  Buffer written{};
  const std::size_t count = Convert(encoder_.Get(), bytes, written);
  if (count > sizeof(std::uint32_t)) return 0;
  std::uint32_t code = 0;
  for (std::size_t i = 0; i < count; ++i) {
    code = code << 8 | static_cast<unsigned char>(written.at(i));
  }
  return code;
}

}  // namespace latchkey::platform
