// Each operation, with the first, second, ... of its allocations failing until it succeeds: its
// result and record, that nothing leaks, and that the object works afterwards.
#include <gtest/gtest.h>

#include "tests/support/every_allocation.h"

namespace latchkey::test {
namespace {

// Too long to be stored inside an object.
const Text kLongText(200, u'a');
const Text kLongDigits(400, u'4');

TEST_F(EveryAllocationTest, FailuresInCreateHashAreRecorded) {
  const Call run = [](clsCryptoAPI& object) { return object.CreateHash(kLongText, 1, true, true); };
  // The conversion to digits has a separate trap.
  const auto check = [](const RecordValues& record) {
    ExpectOutOfMemory(record, record.location == 441 ? 441 : 432, 709);
  };
  EXPECT_GE(SweepCall(run, check), 1);
}

TEST_F(EveryAllocationTest, FailuresInCreateRandomAreRecorded) {
  // Random, so only its length can be checked; hexadecimal, so that no byte is cut off as a space.
  const Call random = [](clsCryptoAPI& object) {
    return object.CreateRandom(400, true, true).size() == 400 ? Text(u"done") : Text();
  };
  const auto checkRandom = [](const RecordValues& record) {
    ExpectOutOfMemory(record, record.location == 441 ? 441 : 433, 710);
  };
  EXPECT_GE(SweepCall(random, checkRandom), 1);
  EXPECT_GE(SweepSeedOf(random, {433, 441}), 1);
}

TEST_F(EveryAllocationTest, FailuresWhileMakingALetterAreRecorded) {
  const Call letter = [](clsCryptoAPI& object) {
    return object.CreateSaltValue(1, true).size() == 1 ? Text(u"done") : Text();
  };
  const auto check = [](const RecordValues& record) { ExpectOutOfMemory(record, 434, 0); };
  EXPECT_GE(SweepCall(letter, check), 1);
  EXPECT_GE(SweepSeedOf(letter, {434}), 1);
}

TEST_F(EveryAllocationTest, FailuresInARawSaltAreRecordedAtTheInnerOrTheOuterTrap) {
  // Long enough that some text remains after trimming, and that every text is allocated.
  const Call salt = [](clsCryptoAPI& object) {
    return object.CreateSaltValue(400).empty() ? Text() : Text(u"done");
  };
  const auto check = [](const RecordValues& record) {
    ExpectOutOfMemory(record, record.location == 434 ? 434 : 433, 710);
  };
  EXPECT_GE(SweepCall(salt, check), 1);
  EXPECT_GE(SweepSeedOf(salt, {433, 434}), 1);
}

TEST_F(EveryAllocationTest, FailuresInTheHexadecimalConversionsAreRecorded) {
  const Call toHex = [](clsCryptoAPI& object) { return object.ConvertStringToHex(kLongText); };
  const Call fromHex = [](clsCryptoAPI& object) {
    return object.ConvertStringFromHex(kLongDigits);
  };
  const auto check = [](std::int16_t trap) {
    return [trap](const RecordValues& record) { ExpectOutOfMemory(record, trap, 0); };
  };
  EXPECT_GE(SweepCall(toHex, check(441)), 1);
  EXPECT_GE(SweepCall(fromHex, check(440)), 1);
}

}  // namespace
}  // namespace latchkey::test
