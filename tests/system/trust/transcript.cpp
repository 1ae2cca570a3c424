#include "tests/system/trust/transcript.h"

namespace latchkey::test {
namespace {

constexpr std::size_t kShortest = 24;  // values of more units than this are not written out

// FNV-1a.
constexpr std::uint64_t kStart = 14695981039346656037U;
constexpr std::uint64_t kPrime = 1099511628211U;

template <class Units>
std::uint64_t DigestOf(const Units& units, std::uint64_t digest = kStart) {
  for (const auto unit : units) {
    digest = (digest ^ static_cast<std::uint64_t>(static_cast<unsigned>(unit))) * kPrime;
  }
  return digest;
}

template <class Units>
std::string ShownUnits(const Units& units) {
  std::string shown = std::to_string(units.size()) + ":";
  if (units.size() > kShortest) return shown + "#" + HexOf(DigestOf(units));
  for (const auto unit : units) {
    constexpr std::string_view kDigits = "0123456789ABCDEF";
    for (int shift = static_cast<int>(sizeof(unit)) * 8 - 4; shift >= 0; shift -= 4) {
      shown += kDigits[(static_cast<unsigned>(unit) >> shift) & 0xFU];
    }
  }
  return shown;
}

}  // namespace

void Transcript::Line(std::string_view line) {
  digest_ = DigestOf(line, digest_) * kPrime;
  if (shown_) std::printf("%.*s\n", static_cast<int>(line.size()), line.data());
}

std::string Shown(const ByteArray& array) {
  if (array.Dimensions() == 0) return "none";
  std::string shape;
  if (array.Dimensions() != 1 || array.LowerBound() != 0) {
    shape = "[" + std::to_string(array.Dimensions()) + " from " +
            std::to_string(array.LowerBound()) + "]";
  }
  return shape + ShownUnits(array.Elements());
}

std::string Shown(TextView text) { return "'" + ShownUnits(text) + "'"; }

std::string HexOf(std::uint64_t value) {
  char digits[17];
  std::snprintf(digits, sizeof(digits), "%08lX%08lX", static_cast<unsigned long>(value >> 32),
                static_cast<unsigned long>(value & 0xFFFFFFFFU));
  return digits;
}

}  // namespace latchkey::test
