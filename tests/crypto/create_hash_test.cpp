// CreateHash without failures.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/code_pages.h"
#include "tests/support/watched_service.h"

namespace latchkey::test {
namespace {

using testing::ElementsAre;

constexpr std::int16_t kMd5 = 1;
constexpr std::int16_t kMd4 = 2;
constexpr std::int16_t kMd2 = 3;
constexpr std::int16_t kSha1 = 4;

class CreateHashTest : public WatchedService {
 protected:
  std::string HexHash(TextView text, std::int16_t hash, bool appendPassword = false,
                      bool caseSensitive = false) {
    return Printable(api.CreateHash(text, hash, true, appendPassword, caseSensitive));
  }

  // The first of the texts "0", "1", "2"... whose digest ends in a space.
  Text TextWhoseDigestEndsInASpace(std::int16_t hash) {
    for (int i = 0; i < 100'000; ++i) {
      Text text = Wide(std::to_string(i));
      if (HexHash(text, hash).ends_with("20")) return text;
    }
    ADD_FAILURE() << "no such text";
    return {};
  }
};

TEST_F(CreateHashTest, HashesThePublishedTexts) {
  // RFC 1321 A.5, RFC 1320 A.5, RFC 1319 A.5, RFC 3174 7.3.
  EXPECT_EQ(HexHash(u"abc", kMd5), "900150983CD24FB0D6963F7D28E17F72");
  EXPECT_EQ(HexHash(u"abc", kMd4), "A448017AAF21D8525FC10AE87AA6729D");
  EXPECT_EQ(HexHash(u"abc", kMd2), "DA853B0D3F88D99B30283A69E6DED6BB");
  EXPECT_EQ(HexHash(u"abc", kSha1), "A9993E364706816ABA3E25717850C26C9CD0D89D");
}

TEST_F(CreateHashTest, HashesEmptyText) {
  EXPECT_EQ(HexHash(u"", kMd5), "D41D8CD98F00B204E9800998ECF8427E");
  EXPECT_EQ(HexHash(u"", kMd4), "31D6CFE0D16AE931B73C59D7E0C089C0");
  EXPECT_EQ(HexHash(u"", kMd2), "8350E5A3E24C153DF2275C9F80692773");
  EXPECT_EQ(HexHash(u"", kSha1), "DA39A3EE5E6B4B0D3255BFEF95601890AFD80709");
}

TEST_F(CreateHashTest, HashesAMillionCharacters) {
  // RFC 3174 7.3, test 3.
  EXPECT_EQ(HexHash(Text(1'000'000, u'a'), kSha1), "34AA973CD4C4DAA4F61EEB2BDBAD27316534016F");
}

TEST_F(CreateHashTest, CaseSensitiveChangesNothing) {
  for (const bool appendPassword : {false, true}) {
    for (std::int16_t hash = kMd5; hash <= kSha1; ++hash) {
      EXPECT_EQ(HexHash(u"Abc", hash, appendPassword, true),
                HexHash(u"Abc", hash, appendPassword, false));
      EXPECT_EQ(api.CreateHash(u"Abc", hash, false, appendPassword, true),
                api.CreateHash(u"Abc", hash, false, appendPassword, false));
    }
  }
  EXPECT_EQ(HexHash(u"abc", kMd5, false, true), "900150983CD24FB0D6963F7D28E17F72");
}

TEST_F(CreateHashTest, TheCaseOfTheTextIsKept) {
  for (const bool caseSensitive : {false, true}) {
    EXPECT_NE(HexHash(u"abc", kMd5, false, caseSensitive),
              HexHash(u"ABC", kMd5, false, caseSensitive));
  }
}

TEST_F(CreateHashTest, CallsTheProviderOnceForEachStep) {
  journal.Clear();
  static_cast<void>(api.CreateHash(u"abc", kMd5));
  EXPECT_THAT(journal.All(), ElementsAre("Clear", calls::Any("CryptAcquireContextA"),
                                         calls::CreateHash(0x8003).Makes(HashNo(1)),
                                         calls::HashData(1, BytesOf("abc")),
                                         calls::GetDigest(1, 16), calls::DestroyHash(1)));
}

TEST_F(CreateHashTest, SuccessLeavesTheRecordCleared) {
  LeaveEarlierFailure();
  EXPECT_NE(api.CreateHash(u"abc", kMd5, true, true), u"");
  EXPECT_EQ(ValuesOf(record), AfterClear());
}

TEST_F(CreateHashTest, TheTextIsHashedUnchanged) {
  static_cast<void>(api.CreateHash(u" a b  ", kMd5));
  static_cast<void>(api.CreateHash(Text(u"a\0b\0", 4), kMd5));
  EXPECT_THAT(
      journal.Named({"CryptHashData"}),
      ElementsAre(calls::HashData(1, BytesOf(" a b  ")), calls::HashData(2, {0x61, 0, 0x62, 0})));
}

TEST_F(CreateHashTest, CharactersAreHashedAsTheirCodePageBytes) {
  scope.Services().codePage = &OneToOnePage();
  static_cast<void>(api.CreateHash(u"a\u20AC\u0481\u4E00", kMd5));
  EXPECT_THAT(journal.Named({"CryptHashData"}),
              ElementsAre(calls::HashData(1, {0x61, 0x80, 0x81, 0x3F})));
}

TEST_F(CreateHashTest, ATextAndItsByteArrayHaveTheSameHash) {
  const Text text = u"caf\u00E9 \u20AC";
  ByteArray password = api.StringToByteArray(TextView(text));
  api.Password(password);
  EXPECT_EQ(HexHash(u"", kMd5, true), HexHash(text, kMd5));
}

TEST_F(CreateHashTest, ARawDigestIsOneCharacterForEachByte) {
  for (std::int16_t hash = kMd5; hash <= kSha1; ++hash) {
    const Text raw = api.CreateHash(u"abc", hash);
    EXPECT_EQ(raw.size(), hash == kSha1 ? 20U : 16U);
    EXPECT_EQ(Printable(api.ConvertStringToHex(raw)), HexHash(u"abc", hash));
  }
}

TEST_F(CreateHashTest, ARawDigestIsConvertedByTheCodePage) {
  scope.Services().codePage = &OneToOnePage();
  provider.SetDigest(FromHex("80FF41000000000000000000000000A0"));
  const Text raw = api.CreateHash(u"abc", kMd5);
  EXPECT_EQ(raw.substr(0, 3), u"\u20AC\u04FFA");
  EXPECT_EQ(raw.back(), u'\u04A0');
}

TEST_F(CreateHashTest, ARawDigestThatEndsInASpaceIsShorter) {
  for (std::int16_t hash = kMd5; hash <= kSha1; ++hash) {
    const Text text = TextWhoseDigestEndsInASpace(hash);
    const std::size_t length = hash == kSha1 ? 20 : 16;
    const std::string hex = HexHash(text, hash);
    EXPECT_EQ(hex.size(), 2 * length);
    const Text raw = api.CreateHash(text, hash);
    EXPECT_LT(raw.size(), length);
    EXPECT_EQ(Printable(api.ConvertStringToHex(raw)), hex.substr(0, 2 * raw.size()));
  }
}

TEST_F(CreateHashTest, OnlyTheSpacesAtTheEndOfADigestAreLost) {
  provider.SetDigest(FromHex("20200120202020202020202020200220"));
  EXPECT_EQ(Printable(api.ConvertStringToHex(api.CreateHash(u"abc", kMd5))),
            "202001202020202020202020202002");
  EXPECT_EQ(HexHash(u"abc", kMd5), "20200120202020202020202020200220");
}

TEST_F(CreateHashTest, ADigestOfOnlySpacesIsEmptyTextWithoutAFailure) {
  LeaveEarlierFailure();
  provider.SetDigest(Bytes(16, 0x20));
  EXPECT_EQ(api.CreateHash(u"abc", kMd5), u"");
  EXPECT_EQ(ValuesOf(record), AfterClear());
  EXPECT_EQ(HexHash(u"abc", kMd5), "20202020202020202020202020202020");
}

TEST_F(CreateHashTest, PadsADigestThatTheProviderDoesNotFillWithSpaces) {
  provider.SetDigest(FromHex("804120"));
  EXPECT_EQ(HexHash(u"abc", kMd5), "80412020202020202020202020202020");
  EXPECT_EQ(HexHash(u"abc", kSha1), "8041202020202020202020202020202020202020");
  EXPECT_EQ(Printable(api.ConvertStringToHex(api.CreateHash(u"abc", kMd5))), "8041");
  provider.SetDigest({});
  LeaveEarlierFailure();
  EXPECT_EQ(api.CreateHash(u"abc", kMd5), u"");
  EXPECT_EQ(ValuesOf(record), AfterClear());
}

TEST_F(CreateHashTest, AnAppendedPasswordIsHashedDirectlyAfterTheText) {
  SetPassword("P w");
  for (std::int16_t hash = kMd5; hash <= kSha1; ++hash) {
    EXPECT_EQ(HexHash(u"abc ", hash, true), HexHash(u"abc P w", hash));
    EXPECT_EQ(api.CreateHash(u"", hash, false, true), api.CreateHash(u"P w", hash));
  }
}

TEST_F(CreateHashTest, WithTheDefaultPasswordRepeatedCallsAgree) {
  EXPECT_EQ(HexHash(u"abc", kMd5, true), HexHash(u"abc", kMd5, true));
  EXPECT_NE(HexHash(u"abc", kMd5, true), HexHash(u"abc", kMd5));
}

TEST_F(CreateHashTest, WithRandomLettersRepeatedCallsDiffer) {
  api.UseDefaultPWD(false);
  EXPECT_NE(HexHash(u"abc", kMd5, true), HexHash(u"abc", kMd5, true));
}

TEST_F(CreateHashTest, DoesNotChangeTheInputAndOutputOfTheCiphers) {
  api.InputData(ArrayOf("data"));
  ASSERT_TRUE(api.Encrypt(1, 1));
  const ByteArray output = api.OutputData();
  EXPECT_NE(HexHash(u"abc", kMd5), "");
  EXPECT_EQ(api.OutputData(), output);
}

}  // namespace
}  // namespace latchkey::test
