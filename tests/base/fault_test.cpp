#include "base/faults.h"

#include <gtest/gtest.h>

#include <new>
#include <set>
#include <stdexcept>
#include <utility>
#include <vector>

namespace latchkey::test {
namespace {

const std::vector<std::pair<std::int32_t, TextView>> kStandardFaults{
    {5, u"Invalid procedure call or argument"},
    {6, u"Overflow"},
    {7, u"Out of memory"},
    {9, u"Subscript out of range"},
    {11, u"Division by zero"},
    {13, u"Type mismatch"},
    {53, u"File not found"},
    {91, u"Object variable or With block variable not set"},
    {94, u"Invalid use of Null"},
    {453, u"Specified DLL function not found"},
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
  for (const auto& [number, text] : kStandardFaults) {
    const Fault fault(static_cast<FaultNumber>(number));
    EXPECT_EQ(fault.Number(), number);
    EXPECT_EQ(Text(fault.Description()), Text(text)) << number;
  }
}

TEST(FaultTest, NamesAgreeWithTheNumbers) {
  EXPECT_EQ(Fault(FaultNumber::InvalidProcedureCall).Number(), 5);
  EXPECT_EQ(Fault(FaultNumber::Overflow).Number(), 6);
  EXPECT_EQ(Fault(FaultNumber::OutOfMemory).Number(), 7);
  EXPECT_EQ(Fault(FaultNumber::SubscriptOutOfRange).Number(), 9);
  EXPECT_EQ(Fault(FaultNumber::DivisionByZero).Number(), 11);
  EXPECT_EQ(Fault(FaultNumber::TypeMismatch).Number(), 13);
  EXPECT_EQ(Fault(FaultNumber::FileNotFound).Number(), 53);
  EXPECT_EQ(Fault(FaultNumber::ObjectNotSet).Number(), 91);
  EXPECT_EQ(Fault(FaultNumber::InvalidUseOfNull).Number(), 94);
  EXPECT_EQ(Fault(FaultNumber::DllFunctionNotFound).Number(), 453);
}

TEST(FaultTest, EveryNumberHasADifferentText) {
  std::set<TextView> texts;
  for (const auto& [number, text] : kStandardFaults) {
    const TextView description = DescriptionOf(static_cast<FaultNumber>(number));
    EXPECT_TRUE(texts.insert(description).second) << number;
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
