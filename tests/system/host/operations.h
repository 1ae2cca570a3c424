// Every kind of call that a client makes on the library, through the class and the C interface.
#pragma once

#include <functional>
#include <string>
#include <vector>

namespace latchkey::test {

struct Operation {
  std::string name;
  // Makes its objects, calls, and releases the objects. Throws std::runtime_error if the call has
  // an unexpected result.
  std::function<void()> run;
};

// Each operation with each hash and cipher that it accepts, ciphers with short and long data; and
// failures of each kind, since those raise exceptions inside.
[[nodiscard]] std::vector<Operation> AllOperations();

// Those that read files or random bytes, where a thread can be cancelled.
[[nodiscard]] std::vector<Operation> OperationsThatAskTheSystem();

}  // namespace latchkey::test
