// The built-in default password.
#pragma once

#include "crypto/shaped_bytes.h"

namespace latchkey {

// The password that is used when the caller set none, in the form of StringToByteArray. It is the
// same in every build, so that any build can read data made with it; it protects nothing from
// anyone who has the component. Assembled on each call; the program file holds it only masked.
[[nodiscard]] ShapedBytes DefaultPassword();

}  // namespace latchkey
