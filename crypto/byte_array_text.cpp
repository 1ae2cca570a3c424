#include "crypto/byte_array_text.h"

#include "crypto/text_capacity.h"
#include "crypto/text_codec.h"

namespace latchkey {

std::span<const std::uint8_t> TextBytesOf(const ByteArray& array) {
  const auto elements = array.TextElements();
  CheckTextCapacity(elements.size(), 1);
  return TrimTrailingSpaces(elements);
}

}  // namespace latchkey
