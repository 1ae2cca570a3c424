#include "crypto/algorithms.h"

namespace latchkey {

HashAlgorithm FindHashAlgorithm(std::int16_t number) noexcept {
  switch (number) {
    case 1:
      return {platform::kAlgorithmMd5, 16};
    case 2:
      return {platform::kAlgorithmMd4, 16};
    case 3:
      return {platform::kAlgorithmMd2, 16};
    case 4:
      return {platform::kAlgorithmSha1, 20};
    default:
      return {};
  }
}

platform::AlgorithmId FindCipherAlgorithm(std::int16_t number, bool enhanced) noexcept {
  switch (number) {
    case 1:
      return platform::kAlgorithmRc4;
    case 2:
      return platform::kAlgorithmRc2;
    case 3:
      return platform::kAlgorithmDes;
    case 4:
      return enhanced ? platform::kAlgorithm3Des : platform::kAlgorithmNone;
    case 5:
      return enhanced ? platform::kAlgorithm3Des112 : platform::kAlgorithmNone;
    default:
      return platform::kAlgorithmNone;
  }
}

}  // namespace latchkey
