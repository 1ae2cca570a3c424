#include <latchkey/types.h>

bool Use_types() {
  const latchkey::Text text = u"abc";
  const latchkey::Variant value = latchkey::TextView(text);
  return std::get<latchkey::TextView>(value).size() == 3 &&
         std::holds_alternative<latchkey::Empty>(latchkey::Variant());
}
