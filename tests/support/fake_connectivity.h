// A connection state that a test sets.
#pragma once

#include <cstdint>
#include <optional>

#include "latchkey/fault.h"
#include "platform/connectivity.h"

namespace latchkey::test {

class FakeConnectivity final : public platform::Connectivity {
 public:
  bool connected = false;
  // The flags that the query writes; if empty, it does not write them.
  std::optional<std::uint32_t> flags;
  // Raised instead of returning an answer.
  std::optional<FaultNumber> fault;

  int calls = 0;
  std::uint32_t flagsOnEntry = 0;
  std::uint32_t reserved = 0;

  bool InternetGetConnectedState(std::uint32_t* lpdwFlags, std::uint32_t dwReserved) override {
    ++calls;
    flagsOnEntry = *lpdwFlags;
    reserved = dwReserved;
    if (fault) throw Fault(*fault);
    if (flags) *lpdwFlags = *flags;
    return connected;
  }
};

}  // namespace latchkey::test
