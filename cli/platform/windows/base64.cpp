#include "cli/platform/base64.h"

#include <windows.h>

#include <wincrypt.h>

#include <algorithm>
#include <array>

namespace latchkey::cli {

// The system appends a zero.
void EncodeBase64(std::span<const std::uint8_t> bytes, std::span<std::uint8_t> text) noexcept {
  if (bytes.empty()) return;
  auto length = static_cast<DWORD>(Base64Length(bytes.size()) + 1);
  CryptBinaryToStringA(bytes.data(), static_cast<DWORD>(bytes.size()),
                       CRYPT_STRING_BASE64 | CRYPT_STRING_NOCRLF,
                       reinterpret_cast<char*>(text.data()), &length);
}

// The system accepts set bits after the last byte; Nettle refuses them. Encoding the last bytes
// again detects them.
std::optional<std::size_t> DecodeBase64(std::span<const std::uint8_t> text,
                                        std::span<std::uint8_t> bytes) noexcept {
  if (text.empty()) return 0;
  auto length = static_cast<DWORD>(bytes.size());
  if (CryptStringToBinaryA(reinterpret_cast<const char*>(text.data()),
                           static_cast<DWORD>(text.size()), CRYPT_STRING_BASE64, bytes.data(),
                           &length, nullptr, nullptr) == 0) {
    return std::nullopt;
  }
  if (Base64Length(length) != text.size()) return std::nullopt;
  std::array<std::uint8_t, 5> again{};
  EncodeBase64(std::span(bytes).subspan(std::size_t{length - 1} / 3 * 3, (length - 1) % 3 + 1),
               again);
  if (!std::equal(again.begin(), again.begin() + 4, text.end() - 4)) return std::nullopt;
  return length;
}

}  // namespace latchkey::cli
