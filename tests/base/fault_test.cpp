#include "base/faults.h"

#include <gtest/gtest.h>

#include <new>
#include <stdexcept>
#include <vector>

namespace latchkey::test {
namespace {

struct StandardFault {
  FaultNumber name;
  std::int32_t number;
  TextView text;
};

const std::vector<StandardFault> kStandardFaults{
    {FaultNumber::InvalidProcedureCall, 5, u"Invalid procedure call or argument"},
    {FaultNumber::Overflow, 6, u"Overflow"},
    {FaultNumber::OutOfMemory, 7, u"Out of memory"},
    {FaultNumber::SubscriptOutOfRange, 9, u"Subscript out of range"},
    {FaultNumber::DivisionByZero, 11, u"Division by zero"},
    {FaultNumber::TypeMismatch, 13, u"Type mismatch"},
    {FaultNumber::FileNotFound, 53, u"File not found"},
    {FaultNumber::ObjectNotSet, 91, u"Object variable or With block variable not set"},
    {FaultNumber::InvalidUseOfNull, 94, u"Invalid use of Null"},
    {FaultNumber::DllFunctionNotFound, 453, u"Specified DLL function not found"},
};

template <class Exception>
std::int32_t NumberOfCaught(Exception exception) {
  try {
    throw exception;
  } catch (...) {
    return CurrentFault().Number();
  }
}

TEST(FaultTest, CarriesTheAutomationNumberAndText) {
  for (const auto& [name, number, text] : kStandardFaults) {
    EXPECT_EQ(Fault(name).Number(), number) << number;
    EXPECT_EQ(Text(Fault(name).Description()), Text(text)) << number;
  }
}

TEST(FaultTest, AnUnknownNumberHasTheGeneralText) {
  EXPECT_EQ(Text(DescriptionOf(static_cast<FaultNumber>(1000))),
            u"Application-defined or object-defined error");
}

TEST(CurrentFaultTest, AFaultIsReturnedUnchanged) {
  EXPECT_EQ(NumberOfCaught(Fault(FaultNumber::InvalidUseOfNull)), 94);
}

TEST(CurrentFaultTest, AFailedAllocationIsOutOfMemory) {
  EXPECT_EQ(NumberOfCaught(std::bad_alloc()), 7);
  EXPECT_EQ(NumberOfCaught(std::bad_array_new_length()), 7);
  EXPECT_EQ(NumberOfCaught(std::length_error("longer than any container")), 7);
}

TEST(CurrentFaultTest, AnyOtherExceptionIsAnInvalidProcedureCall) {
  EXPECT_EQ(NumberOfCaught(std::runtime_error("foreign")), 5);
  EXPECT_EQ(NumberOfCaught(42), 5);
}

}  // namespace
}  // namespace latchkey::test
