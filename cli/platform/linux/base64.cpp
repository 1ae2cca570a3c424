#include "cli/platform/base64.h"

#include <nettle/base64.h>

namespace latchkey::cli {

// char8_t and the like are not the library's types: it takes plain characters.
void EncodeBase64(std::span<const std::uint8_t> bytes, std::span<std::uint8_t> text) noexcept {
  nettle_base64_encode_raw(reinterpret_cast<char*>(text.data()), bytes.size(), bytes.data());
}

std::optional<std::size_t> DecodeBase64(std::span<const std::uint8_t> text,
                                        std::span<std::uint8_t> bytes) noexcept {
  base64_decode_ctx state{};
  nettle_base64_decode_init(&state);
  std::size_t length = bytes.size();
  const bool isGood =
      nettle_base64_decode_update(&state, &length, bytes.data(), text.size(),
                                  reinterpret_cast<const char*>(text.data())) != 0 &&
      nettle_base64_decode_final(&state) != 0;
  if (!isGood) return std::nullopt;
  return length;
}

}  // namespace latchkey::cli
