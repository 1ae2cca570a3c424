#include "platform/ascii_text.h"

namespace latchkey::platform {

const AsciiText& FastestAsciiText() noexcept { return kAsciiTextPortable; }

}  // namespace latchkey::platform
