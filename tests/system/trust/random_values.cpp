#include "tests/system/trust/random_values.h"

#include <algorithm>
#include <array>

namespace latchkey::test {
namespace {

// Bytes 80 to 9F (hexadecimal) of code page 1252; the five undefined bytes map to themselves.
constexpr std::array<char16_t, 32> kUpperControls{
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

char16_t PageCharacter(std::uint64_t byte) {
  const bool moved = byte >= 0x80 && byte < 0xA0;
  return moved ? kUpperControls[static_cast<std::size_t>(byte - 0x80)]
               : static_cast<char16_t>(byte);
}

template <class Draw>
Text TextOf(std::size_t size, Draw&& draw) {
  Text text(size, u'\0');
  std::generate(text.begin(), text.end(), draw);
  return text;
}

std::int32_t LastIndex(const Bytes& bytes) { return static_cast<std::int32_t>(bytes.size()) - 1; }

ByteArray OddArray(RandomSource& random, const Bytes& bytes) {
  constexpr std::array<std::int32_t, 4> kLowerBounds{-2, -1, 1, 7};
  const std::int32_t lowest = random.Of(std::span(kLowerBounds));
  switch (random.Below(4)) {
    case 0:
      return {};
    case 1:
      return ByteArray(bytes);  // the last element is ignored
    case 2:
      return bytes.empty() ? ByteArray() : ByteArray::WithShape(2, 0, LastIndex(bytes), bytes);
    default:
      return bytes.empty() ? ByteArray()
                           : ByteArray::WithShape(1, lowest, lowest + LastIndex(bytes), bytes);
  }
}

}  // namespace

std::size_t RandomSize(RandomSource& random, std::size_t most) {
  constexpr std::array<std::size_t, 8> kLimits{2, 9, 9, 18, 18, 40, 300, 0};
  const std::size_t limit = random.Of(std::span(kLimits));
  return static_cast<std::size_t>(random.Below((limit == 0 ? most : std::min(limit, most)) + 1));
}

Bytes RandomBytes(RandomSource& random, std::size_t size) {
  Bytes bytes(size);
  for (auto& byte : bytes) byte = static_cast<std::uint8_t>(random.Below(256));
  return bytes;
}

ByteArray RandomArray(RandomSource& random, std::size_t most) {
  const Bytes bytes = RandomBytes(random, RandomSize(random, most));
  return random.OneIn(12) ? OddArray(random, bytes) : ArrayOf(bytes);
}

Text RandomText(RandomSource& random, std::size_t most) {
  const std::size_t size = RandomSize(random, most);
  switch (random.Below(8)) {
    case 0:
      return TextOf(size, [&] { return static_cast<char16_t>(random.Below(0x10000)); });
    case 1:
      return TextOf(size, [&] { return static_cast<char16_t>(random.Below(0x180)); });
    case 2:
      return u"  " + TextOf(size, [&] { return static_cast<char16_t>(random.Below(128)); }) + u"  ";
    default:
      return TextOf(size, [&] { return PageCharacter(random.Below(256)); });
  }
}

Text RandomHex(RandomSource& random, std::size_t most) {
  constexpr TextView kDigits = u"0123456789ABCDEFabcdef";
  Text text = TextOf(2 * RandomSize(random, most),
                     [&] { return kDigits[static_cast<std::size_t>(random.Below(22))]; });
  if (random.OneIn(6)) text += u'7';
  if (!text.empty() && random.OneIn(4)) {
    text[static_cast<std::size_t>(random.Below(text.size()))] =
        static_cast<char16_t>(random.OneIn(2) ? random.Below(0x10000) : random.Below(128));
  }
  return text;
}

Variant RandomVariant(RandomSource& random, const Text& text) {
  constexpr std::array kScales{1.0, 8.0, 100.0, 1e6, 1e-6, 1e-12};
  const double scaled =
      random.Between(-2'000'000'000, 2'000'000'000) / random.Of(std::span(kScales));
  switch (random.Below(10)) {
    case 0:
      return Empty{};
    case 1:
      return Null{};
    case 2:
      return random.Flag();
    case 3:
      return random.Between(-2'147'483'647, 2'147'483'647);
    case 4:
      return scaled;
    case 5:
      return static_cast<float>(random.Between(-99'999, 99'999)) / 8.0F;
    case 6:
      return Date{random.Between(-600'000 * 4, 2'900'000 * 4) / 4.0};
    default:
      return TextView(text);
  }
}

}  // namespace latchkey::test
