// A service object on a scripted provider, on a thread with a watched error record.
#pragma once

#include <string>
#include <vector>

#include "crypto/crypto_state.h"
#include "latchkey/cls_crypto_api.h"
#include "tests/support/bytes.h"
#include "tests/support/provider_calls.h"
#include "tests/support/scripted_provider.h"
#include "tests/support/watched_module.h"

namespace latchkey::test {

// The fixture of tests that check the provider calls of an operation of the service object and its
// writes to the record. The provider passes calls to the platform's.
class WatchedService : public WatchedModule {
 protected:
  explicit WatchedService(provider::CryptoProvider* real = &provider::SystemCryptoProvider())
      : provider(journal, real) {
    ThisThreadCrypto().provider = &provider;
  }

  // The record after LeaveEarlierFailure and an operation that recorded this failure: the
  // operation's own Clear emptied the texts and kept the numbers.
  [[nodiscard]] RecordValues AfterApplicationFailure(std::int16_t location, std::int16_t number,
                                                     const std::string& text) const {
    return {location, 2, number, text, kEarlierFailure.rtNumber, "", true, 0};
  }
  [[nodiscard]] RecordValues AfterRunTimeFailure(std::int16_t location, std::int32_t number,
                                                 const std::string& text) const {
    return {location, 1, kEarlierFailure.appNumber, "", number, text, true, 0};
  }
  [[nodiscard]] RecordValues AfterClear() const {
    return {kEarlierFailure.location,
            2,
            kEarlierFailure.appNumber,
            "",
            kEarlierFailure.rtNumber,
            "",
            false,
            0};
  }

  void SetPassword(std::string_view password) {
    ByteArray array = ArrayOf(password);
    api.Password(array);
  }

  ScriptedProvider provider;
  clsCryptoAPI api;
};

// The same with a provider that always succeeds and does nothing, for calls that would leave traces
// on the machine, such as a new key set.
class WatchedServiceOnPlainProvider : public WatchedService {
 protected:
  WatchedServiceOnPlainProvider() : WatchedService(nullptr) {}
};

}  // namespace latchkey::test
