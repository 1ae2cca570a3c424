#include "crypto/byte_array_text.h"

#include <algorithm>
#include <utility>

#include "base/checked_arithmetic.h"
#include "crypto/text_codec.h"
#include "platform/large_memory.h"

namespace latchkey {

WorkingText WorkingTextOf(std::span<const std::uint8_t> textElements) {
  WorkingText text(textElements.size(), 1);
  std::copy(textElements.begin(), textElements.end(), text.Codes().begin());
  return text;
}

WipedBytes TextBytesOf(std::span<const std::uint8_t> textElements) {
  WorkingText::CheckCapacity(textElements.size(), 1);
  const auto text = TrimTrailingSpaces(textElements);
  return {text.begin(), text.end()};
}

ShapedBytes ArrayOfText(TextView text) {
  static_cast<void>(NarrowTo<std::int32_t>(text.size()));
  WorkingBytes codes(text.size() + 1);
  platform::ExpectFilling(codes.data(), codes.size());
  EncodeText(text, codes.All().first(text.size()));
  return ShapedBytes::WithTrailingZero(std::move(codes), text.size());
}

}  // namespace latchkey
