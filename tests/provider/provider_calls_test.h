// The fixture of tests that make single calls of the platform's own provider.
#pragma once

#include <gtest/gtest.h>

#include "tests/support/provider_session.h"

namespace latchkey::test {

class ProviderCallsTest : public testing::Test {
 protected:
  static constexpr provider::HCRYPTPROV kUntouched = 0x5555;

  std::uint32_t AddTo(provider::HCRYPTHASH hash, const Bytes& data) {
    return ErrorOf(
        provider.CryptHashData(hash, data.data(), static_cast<std::uint32_t>(data.size()), 0));
  }

  const Bytes kPassword{'a', 'b', 'c'};
  provider::CryptoProvider& provider = provider::SystemCryptoProvider();
  ProviderSession base{provider::kBaseProviderName};
  ProviderSession enhanced{provider::kEnhancedProviderName};
};

}  // namespace latchkey::test
