// How CreateRandom combines the provider's bytes and the seed text.
#include <gtest/gtest.h>

#include <algorithm>

#include "tests/support/code_pages.h"
#include "tests/support/random_service.h"

namespace latchkey::test {
namespace {

using CreateRandomTest = RandomService;

constexpr bool kExact = true;
constexpr bool kAsItComes = false;
constexpr bool kHex = true;
constexpr bool kRaw = false;

TEST_F(CreateRandomTest, PassesTheBeginningOfTheSeedTextToTheProvider) {
  static_cast<void>(api.CreateRandom(4));
  EXPECT_EQ(journal.Named({"CryptGenRandom"}),
            CallJournal::Entries{calls::GenRandom(BytesOf("1234"))});
}

TEST_F(CreateRandomTest, PadsAShorterSeedTextWithSpaces) {
  static_cast<void>(api.CreateRandom(16));
  EXPECT_EQ(journal.Named({"CryptGenRandom"}),
            CallJournal::Entries{calls::GenRandom(BytesOf("123456123456    "))});
}

TEST_F(CreateRandomTest, AppendsTheRestOfTheSeedTextToTheRandomBytes) {
  SetRandom("ABCD");
  EXPECT_EQ(api.CreateRandom(4, kAsItComes, kRaw), u"ABCD56123456");
}

TEST_F(CreateRandomTest, TrimsThePaddingOfALongRequest) {
  SetRandom("x");
  EXPECT_EQ(api.CreateRandom(12), Text(12, u'x'));
  SetSeed();
  EXPECT_EQ(api.CreateRandom(16), Text(16, u'x'));
}

TEST_F(CreateRandomTest, TheExactLengthCutsOffTheSeedText) {
  SetRandom("ABCD");
  EXPECT_EQ(api.CreateRandom(4, kExact), u"ABCD");
}

TEST_F(CreateRandomTest, RemovesLeadingSpaces) {
  SetRandom("  ABCDEFGHIJKLMN");
  EXPECT_EQ(api.CreateRandom(16), u"ABCDEFGHIJKLMN");
  SetSeed();
  EXPECT_EQ(api.CreateRandom(16, kExact), u"ABCDEFGHIJKLMN");
}

TEST_F(CreateRandomTest, TheSeedTextReplacesRemovedLeadingSpaces) {
  SetRandom("  AB");
  EXPECT_EQ(api.CreateRandom(4), u"AB56123456");
  SetSeed();
  EXPECT_EQ(api.CreateRandom(4, kExact), u"AB56");
}

TEST_F(CreateRandomTest, RemovesTrailingSpacesWhenNoSeedTextFollows) {
  SetRandom("ABCDEFGHIJ  ");
  EXPECT_EQ(api.CreateRandom(12), u"ABCDEFGHIJ");
}

TEST_F(CreateRandomTest, KeepsSpacesThatTheSeedTextFollows) {
  SetRandom("AB  ");
  EXPECT_EQ(api.CreateRandom(4), u"AB  56123456");
  SetSeed();
  EXPECT_EQ(api.CreateRandom(4, kExact), u"AB  ");
}

TEST_F(CreateRandomTest, OnlySpacesAreTrimmed) {
  SetRandom(std::string_view("\t\0\n12345678\r\0\v", 14));
  EXPECT_EQ(api.CreateRandom(14), Text(u"\t\0\n12345678\r\0\v", 14));
}

TEST_F(CreateRandomTest, HexadecimalConvertsTheTrimmedTextWithItsSeedText) {
  SetRandom("  AB");
  EXPECT_EQ(api.CreateRandom(4, kAsItComes, kHex), u"41423536313233343536");
}

// The capacity of the text includes the characters that were cut off; they must not be left there.
TEST_F(CreateRandomTest, WipesTheCharactersThatTheExactLengthCutsOff) {
  SetRandom(std::string(100, '\xAB'));
  const Text digits = api.CreateRandom(100, kExact, kHex);
  ASSERT_EQ(digits, Wide(Hex(Bytes(50, 0xAB))));
  ASSERT_GE(digits.capacity(), 200U);
  const char16_t* const memory = digits.data();
  EXPECT_EQ(std::count(memory + 100, memory + 200, u'\0'), 100);
}

TEST_F(CreateRandomTest, TheExactLengthCountsHexadecimalDigits) {
  provider.SetRandomBytes(FromHex("F0E1D2C3B4A5968778695A4B3C2D1E0F"));
  EXPECT_EQ(api.CreateRandom(16, kExact, kHex, false), u"F0E1D2C3B4A59687");
  SetSeed();
  EXPECT_EQ(api.CreateRandom(16, kExact, kHex, true), u"F0E1D2C3B4A59687");
  SetSeed();
  EXPECT_EQ(api.CreateRandom(3, kExact, kHex), u"F0E");
}

TEST_F(CreateRandomTest, ALengthOfZeroGivesTheSeedText) {
  EXPECT_EQ(api.CreateRandom(0), kSeed);
  EXPECT_EQ(journal.Named({"CryptGenRandom"}), CallJournal::Entries{calls::GenRandom({})});
  EXPECT_EQ(ValuesOf(record), RecordValues{});
}

TEST_F(CreateRandomTest, AnExactLengthOfZeroGivesEmptyText) {
  EXPECT_EQ(api.CreateRandom(0, kExact), u"");
  EXPECT_EQ(api.CreateRandom(0, kExact, kHex), u"");
  EXPECT_EQ(journal.Count("CryptGenRandom"), 2U);
}

TEST_F(CreateRandomTest, OmittedArgumentsAreZeroAndFalse) { EXPECT_EQ(api.CreateRandom(), kSeed); }

TEST_F(CreateRandomTest, BytesBecomeCharactersOfTheCodePage) {
  provider.SetRandomBytes({0x80, 0x8C, 0xFF});
  EXPECT_EQ(api.CreateRandom(3, kExact), u"\u20AC\u0152\u00FF");
}

TEST_F(CreateRandomTest, EveryByteIsACharacterOnADoubleBytePage) {
  scope.Services().codePage = &DoubleBytePage();
  provider.SetRandomBytes({0x82, 0xB1, 0xFF});
  EXPECT_EQ(api.CreateRandom(3, kExact), u"\u0082\uFF71\u00FF");
  EXPECT_EQ(api.CreateRandom(3, kAsItComes, kHex).substr(0, 6), u"82B1FF");
}

TEST_F(CreateRandomTest, KeepsTheProviderOpen) {
  static_cast<void>(api.CreateRandom(4));
  static_cast<void>(api.CreateRandom(4));
  EXPECT_EQ(journal.Count("CryptAcquireContextA"), 1U);
  EXPECT_EQ(provider.OpenHandles(), std::vector<HandleName>{ContextNo(1)});
}

TEST_F(CreateRandomTest, SuccessOnlyClearsTheRecord) {
  LeaveEarlierFailure();
  SetRandom("ABCD");
  EXPECT_EQ(api.CreateRandom(4, kExact), u"ABCD");
  ExpectClearAndThen({});
}

using RealRandomTest = WatchedService;

TEST_F(RealRandomTest, ReturnsDifferentDigitsEachTime) {
  const Text first = api.CreateRandom(32, kExact, kHex);
  const Text second = api.CreateRandom(32, kExact, kHex);
  EXPECT_EQ(first.size(), 32U);
  EXPECT_EQ(first.find_first_not_of(u"0123456789ABCDEF"), Text::npos);
  EXPECT_NE(first, second);
}

}  // namespace
}  // namespace latchkey::test
