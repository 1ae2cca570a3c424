#include "platform/hex_digits.h"

namespace latchkey::platform {

const HexDigits& FastestHexDigits() noexcept { return kHexDigitsPortable; }

}  // namespace latchkey::platform
