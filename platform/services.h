// The platform services that the component works against, as one value that a test can replace.
#pragma once

#include "platform/code_page.h"
#include "platform/connectivity.h"
#include "platform/crypto_provider.h"
#include "platform/system_probe.h"
#include "platform/system_random.h"

namespace latchkey::platform {

struct Services {
  CryptoProvider* provider = &SystemCryptoProvider();
  const CodePage* codePage = &SystemCodePage();
  SystemProbe* probe = &MachineProbe();
  Connectivity* connectivity = &SystemConnectivity();
  bool (*fillRandom)(std::span<std::uint8_t> bytes) noexcept = &FillRandom;
};

}  // namespace latchkey::platform
