// The list of all faults, and the conversion of exceptions to faults.
#pragma once

#include <array>

#include "latchkey/fault.h"

namespace latchkey {

// All fault numbers, in ascending order.
inline constexpr std::array kFaultNumbers{
    FaultNumber::InvalidProcedureCall, FaultNumber::Overflow,       FaultNumber::OutOfMemory,
    FaultNumber::SubscriptOutOfRange,  FaultNumber::DivisionByZero, FaultNumber::TypeMismatch,
    FaultNumber::FileNotFound,         FaultNumber::ObjectNotSet,   FaultNumber::InvalidUseOfNull,
    FaultNumber::DllFunctionNotFound};

// The exception being handled, as a fault: a Fault is returned unchanged, a failed allocation is
// OutOfMemory, anything else is InvalidProcedureCall. Call it only inside a catch clause.
[[nodiscard]] Fault CurrentFault() noexcept;

}  // namespace latchkey
