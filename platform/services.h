// The platform services of the component, which a test can replace.
#pragma once

#include "platform/connectivity.h"
#include "platform/system_code_page.h"
#include "platform/system_probe.h"
#include "platform/system_random.h"

namespace latchkey::platform {

struct Services {
  const CodePage* codePage = &SystemCodePage();
  SystemProbe* probe = &MachineProbe();
  Connectivity* connectivity = &SystemConnectivity();
  bool (*fillRandom)(std::span<std::uint8_t> bytes) noexcept = &FillRandom;
};

}  // namespace latchkey::platform
