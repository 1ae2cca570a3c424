#include "crypto/crypto_state.h"

#include <memory>

namespace latchkey {

CryptoState& ThisThreadCrypto() {
  auto& part = ThisThread().part;
  if (!part) part = std::make_unique<CryptoState>();
  return static_cast<CryptoState&>(*part);
}

}  // namespace latchkey
