#include "cli/failure.h"

namespace latchkey::cli {

std::string_view HintFor(std::int32_t location) noexcept {
  switch (location) {
    case check::kDecryptCipher.location:
      return "wrong password or settings, or damaged data; 'latchkey identify' tries all settings";
    case check::kEncryptCipher.location:
      return "the component's block ciphers require at least 4 bytes";
    case check::kEncryptHashType.location:
    case check::kDecryptHashType.location:
      return "hash numbers are 1 to 4, on the command line md5, md4, md2 and sha1";
    case check::kEncryptCipherType.location:
    case check::kDecryptCipherType.location:
    case check::kBaseCipherType.location:
    case check::kEnhancedCipherType.location:
      return "3des and 3des-112 need the enhanced provider";
    case check::kEncryptKey.location:
    case check::kDecryptKey.location:
      return "the provider must have the cipher; RC2's effective bits are 1 to 1024 with the "
             "enhanced provider and 40 with the base provider";
    case check::kEncryptProvider.location:
    case check::kDecryptProvider.location:
    case check::kHashProvider.location:
    case check::kRandomProvider.location:
    case check::kEnhancedProvider.location:
    case check::kStandardProvider.location:
      return "the system lacks the provider; try the other one";
    case check::kHexLength.location:
      return "each byte needs two hexadecimal digits; one is missing";
    default:
      return {};
  }
}

}  // namespace latchkey::cli
