// Every function of the C interface that can fail for want of memory or by its provider, as one
// call with good arguments: for tests that run them all under some condition.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "latchkey.h"

namespace latchkey::test {

struct CFunction {
  std::string name;
  // Returns what the function did. What it opens, it closes; what it writes is checked here.
  std::function<std::int32_t(latchkey_failure*)> call;
};

// `cipher` is that of the key.
[[nodiscard]] std::vector<CFunction> AllCFunctions(std::int32_t cipher = LATCHKEY_RC2);

}  // namespace latchkey::test
