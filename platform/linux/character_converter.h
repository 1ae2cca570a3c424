// Converts one character at a time with the C library's iconv.
#pragma once

#include <iconv.h>

#include <cstdint>
#include <span>

#include "base/unique_handle.h"

namespace latchkey::platform {

struct IconvTrait {
  using Type = iconv_t;
  // NOLINTNEXTLINE(*-int-to-ptr): the value that iconv_open defines for failure
  static iconv_t None() noexcept { return reinterpret_cast<iconv_t>(-1); }
  static void Close(iconv_t descriptor) noexcept { iconv_close(descriptor); }
};

// Converts between an iconv encoding and 16-bit characters. For the thread that made it.
class CharacterConverter {
 public:
  explicit CharacterConverter(const char* encoding);

  // False if iconv does not have the encoding; no other member may be called then.
  [[nodiscard]] bool IsAvailable() const noexcept;

  // The one 16-bit character of a code (its bytes as a big-endian number), or 0.
  [[nodiscard]] char16_t CharacterOf(std::uint32_t code) const;

  // The code of a character in the same form, or 0.
  [[nodiscard]] std::uint32_t CodeOf(char16_t character) const;

 private:
  UniqueHandle<IconvTrait> decoder_;
  UniqueHandle<IconvTrait> encoder_;
};

}  // namespace latchkey::platform
