// Every fault, and what another exception becomes.
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

// The exception being handled, as a fault: a fault stays itself, failed memory is OutOfMemory, and
// anything else is InvalidProcedureCall. Call it inside a catch clause only.
[[nodiscard]] Fault CurrentFault() noexcept;

}  // namespace latchkey
