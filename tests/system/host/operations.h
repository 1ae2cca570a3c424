// Every kind of call that a client makes on the library, through the class and the C interface.
#pragma once

#include <functional>
#include <string>
#include <vector>

namespace latchkey::test {

struct Operation {
  std::string name;
  // Makes its objects, calls, and lets the objects go. Throws std::runtime_error when the call does
  // not end as it should.
  std::function<void()> run;
};

// Each operation with each hash and cipher that it takes, ciphers with little and with much data;
// and failures of each kind, since those raise exceptions inside.
[[nodiscard]] std::vector<Operation> AllOperations();

// Those that read files or random bytes, where a thread can be cancelled.
[[nodiscard]] std::vector<Operation> OperationsThatAskTheSystem();

}  // namespace latchkey::test
