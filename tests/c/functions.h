// Calls with good arguments of every function of the C interface that fails if memory runs out or
// the provider refuses, for tests that run all of them under some condition.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "latchkey.h"

namespace latchkey::test {

struct CFunction {
  std::string name;
  // Returns the function's status. Closes what it opens, and checks what it writes.
  std::function<std::int32_t(latchkey_failure*)> call;
};

// `cipher` is the cipher of the key.
[[nodiscard]] std::vector<CFunction> AllCFunctions(std::int32_t cipher = LATCHKEY_RC2);

}  // namespace latchkey::test
