// The built-in default password.
#pragma once

#include "crypto/shaped_bytes.h"

namespace latchkey {

// The password that stands in for one the caller did not set, in the form of StringToByteArray. It
// is the same in every build, so that data made with it can be read everywhere; it keeps nothing
// from anyone who has the component. Assembled at each call and never stored in the program as it
// is.
[[nodiscard]] ShapedBytes DefaultPassword();

}  // namespace latchkey
