#include <latchkey/byte_array.h>

#include <utility>

using latchkey::ByteArray;

bool Use_byte_array() {
  ByteArray array = ByteArray::WithTrailingZero(ByteArray{65, 66}.Elements());
  const ByteArray copy = array;
  const ByteArray moved = std::move(array);
  return copy == moved && copy != ByteArray::WithShape(1, 1, 3, copy.Elements()) &&
         copy.UpperBound() == 2 && copy.TextElements().size() == 2 && array.Dimensions() == 0;
}
