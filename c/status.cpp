// The C interface: version and status texts.
#include <array>
#include <cstddef>

#include "latchkey.h"

namespace {

constexpr std::array<const char*, LATCHKEY_STATUS_COUNT> kStatusTexts{
    "Done",
    "Bad object: NULL, or an object of another kind",
    "Bad argument",
    "The output buffer is too small",
    "Out of memory",
    "Bad hash type",
    "Bad encryption type",
    "Error acquiring provider",
    "Error deriving key",
    "Error encrypting or decrypting data",
    "Error converting data",
    "The provider refused",
    "Run-time fault",
};

}  // namespace

const char* latchkey_status_text(int32_t status) {
  const bool known = status >= 0 && status < LATCHKEY_STATUS_COUNT;
  return known ? kStatusTexts[static_cast<std::size_t>(status)] : "Unknown status";
}

const char* latchkey_version() { return LATCHKEY_VERSION; }
