#include "diagnostics/failure_table.h"

#include <gtest/gtest.h>

#include <map>
#include <set>
#include <tuple>
#include <vector>

namespace latchkey::test {
namespace {

TEST(FailureTableTest, EveryTrapHasItsLocation) {
  const std::map<std::int16_t, TextView> expected{
      {419, u"connection-state query"},
      {420, u"connection-exists query"},
      {432, u"CreateHash"},
      {433, u"CreateRandom"},
      {434, u"CreateSaltValue"},
      {435, u"Decrypt"},
      {436, u"DecryptData"},
      {437, u"Encrypt"},
      {438, u"EncryptData"},
      {439, u"GetCipherAlgorithm"},
      {440, u"ConvertStringFromHex"},
      {441, u"ConvertStringToHex"},
      {442, u"AcquireProvider"},
  };
  std::map<std::int16_t, TextView> actual;
  for (const TrapSite& site : kTrapSites) actual.emplace(site.location, site.operation);
  EXPECT_EQ(actual, expected);
}

using Check = std::tuple<std::int16_t, std::int16_t, TextView, TextView>;

TEST(FailureTableTest, EveryCheckHasItsLocationNumberAndText) {
  const std::set<Check> expected{
      {709, 117, u"Error creating hash", u"CreateHash"},
      {710, 114, u"Error acquiring provider", u"CreateRandom"},
      {711, 115, u"Bad hash type", u"Decrypt"},
      {712, 116, u"Bad encryption type", u"Decrypt"},
      {713, 114, u"Error acquiring provider", u"Decrypt"},
      {714, 117, u"Error creating hash", u"Decrypt"},
      {715, 118, u"Error creating hash data", u"Decrypt"},
      {716, 119, u"Error deriving key", u"Decrypt"},
      {717, 120, u"Error decrypting data", u"Decrypt"},
      {718, 115, u"Bad hash type", u"Encrypt"},
      {719, 121, u"Bad encryption type", u"Encrypt"},
      {720, 114, u"Error acquiring provider", u"Encrypt"},
      {721, 117, u"Error creating hash", u"Encrypt"},
      {722, 118, u"Error creating hash data", u"Encrypt"},
      {723, 119, u"Error deriving key", u"Encrypt"},
      {724, 122, u"Error encrypting data", u"Encrypt"},
      {725, 121, u"Bad encryption type", u"GetCipherAlgorithm"},
      {726, 121, u"Bad encryption type", u"GetCipherAlgorithm"},
      {727, 123, u"Error converting data", u"ConvertStringFromHex"},
      {728, 124, u"Error acquiring enhanced provider", u"AcquireProvider"},
      {729, 125, u"Error acquiring standard provider", u"AcquireProvider"},
  };
  std::set<Check> actual;
  for (const CheckSite& site : kCheckSites) {
    actual.emplace(site.location, site.number, site.text, site.operation);
  }
  EXPECT_EQ(actual, expected);
}

TEST(FailureTableTest, NoLocationIsUsedTwice) {
  std::set<std::int16_t> locations;
  for (const TrapSite& site : kTrapSites) {
    EXPECT_TRUE(locations.insert(site.location).second) << site.location;
  }
  for (const CheckSite& site : kCheckSites) {
    EXPECT_TRUE(locations.insert(site.location).second) << site.location;
  }
}

TEST(FailureTableTest, NumbersStayInTheirRanges) {
  for (const TrapSite& site : kTrapSites) {
    EXPECT_TRUE(site.location >= 401 && site.location <= 451) << site.location;
  }
  for (const CheckSite& site : kCheckSites) {
    EXPECT_TRUE(site.location >= 700 && site.location <= 761) << site.location;
    EXPECT_TRUE(site.number >= 101 && site.number <= 160) << site.number;
  }
}

TEST(FailureTableTest, EachNumberGoesWithOneText) {
  std::map<std::int16_t, TextView> texts;
  for (const CheckSite& site : kCheckSites) {
    const auto [known, isNew] = texts.emplace(site.number, site.text);
    EXPECT_TRUE(isNew || known->second == site.text) << site.location;
  }
}

TEST(FailureTableTest, TheKindsOfFailureAreOneAndTwo) {
  EXPECT_EQ(kRunTimeFailure, 1);
  EXPECT_EQ(kApplicationFailure, 2);
}

}  // namespace
}  // namespace latchkey::test
