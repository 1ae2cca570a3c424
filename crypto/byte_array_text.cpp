#include "crypto/byte_array_text.h"

#include <algorithm>

#include "crypto/text_codec.h"

namespace latchkey {

WorkingText WorkingTextOf(const ByteArray& array) {
  const auto elements = array.TextElements();
  WorkingText text(elements.size(), 1);
  std::copy(elements.begin(), elements.end(), text.Codes().begin());
  return text;
}

WipedBytes TextBytesOf(const ByteArray& array) {
  const auto elements = array.TextElements();
  WorkingText::CheckCapacity(elements.size(), 1);
  const auto text = TrimTrailingSpaces(elements);
  return {text.begin(), text.end()};
}

}  // namespace latchkey
