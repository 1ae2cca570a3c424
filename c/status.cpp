// The C interface: version and status texts.
#include <array>

#include "latchkey.h"

namespace {

constexpr std::array<const char*, LATCHKEY_STATUS_COUNT> kStatusTexts{
    "Done",
    "Bad handle: none, a closed one, or one of another kind",
    "Bad argument",
    "Unknown flag",
    "The handle belongs to another thread",
    "No latchkey_thread is open on this thread",
    "The output buffer is too small",
    "Out of memory",
    "Bad hash type",
    "Bad encryption type",
    "Error acquiring provider",
    "Error deriving key",
    "Error encrypting or decrypting data",
    "Error converting data",
    "Run-time fault",
    "The provider refused",
};

}  // namespace

const char* latchkey_status_text(int status) {
  const bool known = status >= 0 && status < LATCHKEY_STATUS_COUNT;
  return known ? kStatusTexts[static_cast<std::size_t>(status)] : "Unknown status";
}

const char* latchkey_version() { return LATCHKEY_VERSION; }
