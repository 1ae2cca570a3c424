#include "crypto/engine/text_evidence.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <string_view>

namespace latchkey {
namespace {

using Weights = std::array<double, 256>;

// Relative frequencies of a to z in English, in hundredths of a percent. They sum to 10,000.
constexpr std::array<double, 26> kLetters{817, 149, 278, 425, 1270, 223, 202, 609, 697,
                                          15,  77,  403, 241, 675,  751, 193, 10,  599,
                                          633, 906, 276, 98,  236,  15,  197, 5};

// Shares of the kinds of bytes in English text; they sum to 1.
constexpr double kLowerShare = 0.73;
constexpr double kUpperShare = 0.04;
constexpr double kSpaceShare = 0.16;
constexpr double kDigitShare = 0.02;
constexpr double kPunctuationShare = 0.03;
constexpr double kLineEndShare = 0.014;  // LF, CR and tab together
constexpr double kHighShare = 0.005;     // UTF-8, or letters of a code page
constexpr double kControlShare = 0.001;

void Spread(Weights& weights, unsigned first, unsigned last, double share) {
  for (unsigned code = first; code <= last; ++code) weights.at(code) += share / (last - first + 1);
}

Weights EnglishWeights() {
  Weights weights{};
  Spread(weights, 0x00, 0x1F, kControlShare / 2);
  Spread(weights, 0x7F, 0x7F, kControlShare / 2);
  Spread(weights, 0x80, 0xFF, kHighShare);
  Spread(weights, '0', '9', kDigitShare);
  weights.at(' ') = kSpaceShare;
  for (const char code : std::string_view("\n\r\t")) {
    weights.at(static_cast<unsigned char>(code)) += kLineEndShare / 3;
  }
  for (unsigned letter = 0; letter < kLetters.size(); ++letter) {
    weights.at('a' + letter) = kLowerShare * kLetters.at(letter) / 10'000;
    weights.at('A' + letter) = kUpperShare * kLetters.at(letter) / 10'000;
  }
  const auto isPunctuation = [](double weight) { return weight == 0; };  // the remaining codes
  const auto count = std::count_if(weights.begin(), weights.end(), isPunctuation);
  std::replace_if(weights.begin(), weights.end(), isPunctuation,
                  kPunctuationShare / static_cast<double>(count));
  return weights;
}

double EnglishEvidence(std::span<const std::uint8_t> data) {
  static const Weights kEnglish = EnglishWeights();
  double bits = 0;
  for (const std::uint8_t byte : data) bits += std::log2(kEnglish.at(byte) * 256);
  return bits;
}

double SkewEvidence(std::span<const std::uint8_t> data) {
  std::array<double, 256> counts{};
  double seen = 0;
  double bits = 0;
  for (const std::uint8_t byte : data) {
    bits += std::log2((counts.at(byte) + 0.5) / (seen + 128) * 256);
    counts.at(byte) += 1;
    seen += 1;
  }
  return bits;
}

}  // namespace

double TextEvidence(std::span<const std::uint8_t> data) {
  if (data.empty()) return 0;
  constexpr double kUniform = 0;
  const std::array parts{EnglishEvidence(data) - 1, SkewEvidence(data) - 2, kUniform - 2};
  const double largest = *std::max_element(parts.begin(), parts.end());
  double sum = 0;
  for (const double part : parts) sum += std::exp2(part - largest);
  return largest + std::log2(sum);
}

}  // namespace latchkey
