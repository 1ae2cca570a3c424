// A connection drawn from a driver's input.
#pragma once

#include <utility>

#include "diagnostics/thread_state.h"
#include "latchkey/fault.h"
#include "tests/system/fuzz/input.h"

namespace latchkey::fuzz {

// During its life, gives the thread answers drawn from the input instead of the machine's.
class DrawnConnectivity final : public platform::Connectivity {
 public:
  explicit DrawnConnectivity(Input& input) : input_(input) {
    std::swap(ThisThread().services.connectivity, other_);
  }
  ~DrawnConnectivity() override { ThisThread().services.connectivity = other_; }

  bool InternetGetConnectedState(std::uint32_t* lpdwFlags, std::uint32_t /*dwReserved*/) override {
    const auto answer = input_.Take<std::uint8_t>() % 4;
    *lpdwFlags = input_.Take<std::uint32_t>();
    if (answer == 3) throw Fault(FaultNumber::TypeMismatch);
    return answer % 2 != 0;
  }

 private:
  Input& input_;
  Connectivity* other_ = this;
};

}  // namespace latchkey::fuzz
