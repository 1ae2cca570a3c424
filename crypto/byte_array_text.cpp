#include "crypto/byte_array_text.h"

#include <algorithm>

#include "crypto/text_codec.h"

namespace latchkey {

WorkingText WorkingTextOf(const ByteArray& array) {
  const auto elements = array.TextElements();
  WorkingText text(elements.size(), 1);
  std::copy(elements.begin(), elements.end(), text.Codes().begin());
  PassThroughText(text.Codes());
  return text;
}

platform::WipedBytes TextBytesOf(const ByteArray& array) {
  const auto elements = array.TextElements();
  WorkingText::CheckCapacity(elements.size(), 1);
  platform::WipedBytes text(elements.begin(), elements.end());
  PassThroughText(text);
  text.resize(TrimTrailingSpaces(text).size());
  return text;
}

}  // namespace latchkey
