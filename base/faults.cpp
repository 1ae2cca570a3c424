#include "base/faults.h"

#include <new>
#include <stdexcept>

namespace latchkey {

TextView DescriptionOf(FaultNumber number) noexcept {
  switch (number) {
    case FaultNumber::InvalidProcedureCall:
      return u"Invalid procedure call or argument";
    case FaultNumber::Overflow:
      return u"Overflow";
    case FaultNumber::OutOfMemory:
      return u"Out of memory";
    case FaultNumber::SubscriptOutOfRange:
      return u"Subscript out of range";
    case FaultNumber::DivisionByZero:
      return u"Division by zero";
    case FaultNumber::TypeMismatch:
      return u"Type mismatch";
    case FaultNumber::FileNotFound:
      return u"File not found";
    case FaultNumber::ObjectNotSet:
      return u"Object variable or With block variable not set";
    case FaultNumber::InvalidUseOfNull:
      return u"Invalid use of Null";
    case FaultNumber::DllFunctionNotFound:
      return u"Specified DLL function not found";
  }
  return u"Application-defined or object-defined error";
}

Fault CurrentFault() noexcept {
  try {
    throw;
  } catch (const Fault& fault) {
    return fault;
  } catch (const std::bad_alloc&) {
    return Fault(FaultNumber::OutOfMemory);
  } catch (const std::length_error&) {
    // A container was asked to grow beyond its maximum size.
    return Fault(FaultNumber::OutOfMemory);
  } catch (...) {
    return Fault(FaultNumber::InvalidProcedureCall);
  }
}

}  // namespace latchkey
