#include "crypto/algorithms.h"

namespace latchkey {

HashAlgorithm FindHashAlgorithm(std::int16_t number) noexcept {
  switch (number) {
    case 1:
      return {provider::kAlgorithmMd5, 16};
    case 2:
      return {provider::kAlgorithmMd4, 16};
    case 3:
      return {provider::kAlgorithmMd2, 16};
    case 4:
      return {provider::kAlgorithmSha1, 20};
    default:
      return {};
  }
}

provider::AlgorithmId FindCipherAlgorithm(std::int16_t number, bool enhanced) noexcept {
  switch (number) {
    case kCipherRc4:
      return provider::kAlgorithmRc4;
    case kCipherRc2:
      return provider::kAlgorithmRc2;
    case 3:
      return provider::kAlgorithmDes;
    case 4:
      return enhanced ? provider::kAlgorithm3Des : provider::kAlgorithmNone;
    case 5:
      return enhanced ? provider::kAlgorithm3Des112 : provider::kAlgorithmNone;
    default:
      return provider::kAlgorithmNone;
  }
}

}  // namespace latchkey
