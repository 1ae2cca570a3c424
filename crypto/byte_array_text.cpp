#include "crypto/byte_array_text.h"

#include "base/checked_arithmetic.h"
#include "crypto/text_capacity.h"
#include "crypto/text_codec.h"
#include "platform/large_memory.h"

namespace latchkey {

std::span<const std::uint8_t> TextBytesOf(std::span<const std::uint8_t> textElements) {
  CheckTextCapacity(textElements.size(), 1);
  return TrimTrailingSpaces(textElements);
}

ShapedBytes ArrayOfText(TextView text) {
  static_cast<void>(NarrowTo<std::int32_t>(text.size()));
  InlineBytes codes(text.size() + 1);
  platform::ExpectFilling(codes.data(), codes.size());
  EncodeText(text, codes.All().first(text.size()));
  return ShapedBytes::WithTrailingZero(std::move(codes), text.size());
}

}  // namespace latchkey
