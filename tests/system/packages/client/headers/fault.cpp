#include <latchkey/fault.h>

using latchkey::Fault;
using latchkey::FaultNumber;

bool Use_fault() {
  try {
    throw Fault(FaultNumber::Overflow);
  } catch (const std::exception& error) {
    const auto* fault = dynamic_cast<const Fault*>(&error);
    return fault != nullptr && fault->Number() == 6 && fault->Description() == u"Overflow" &&
           latchkey::DescriptionOf(FaultNumber::TypeMismatch) == u"Type mismatch";
  }
}
