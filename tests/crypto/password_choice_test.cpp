// Which password the operations use: the stored one, the default one, or none.
#include <gtest/gtest.h>

#include <algorithm>
#include <set>

#include "tests/support/watched_service.h"

namespace latchkey::test {
namespace {

class PasswordChoiceTest : public WatchedService {
 protected:
  // The data that an operation hashes.
  template <class Operation>
  Bytes HashedBy(Operation&& operation) {
    journal.Clear();
    operation();
    const CallJournal::Entries calls = journal.Named({"CryptHashData"});
    EXPECT_EQ(calls.size(), 1U);
    return std::get<Bytes>(calls.at(0).arguments.at(1));
  }

  Bytes HashedByEncrypt() {
    return HashedBy([this] { EXPECT_TRUE(api.Encrypt(1, 1)); });
  }
  Bytes HashedByDecrypt() {
    return HashedBy([this] { EXPECT_TRUE(api.Decrypt(1, 1)); });
  }
  Bytes HashedByCreateHash(std::string_view text) {
    return HashedBy([&] { EXPECT_NE(api.CreateHash(Wide(text), 1, true, true), u""); });
  }

  static Bytes DefaultPassword() {
    clsCryptoAPI fresh;
    ByteArray none{0};
    fresh.Password(none);
    return DataOf(fresh.Password());
  }
};

TEST_F(PasswordChoiceTest, TheStoredPasswordIsAllElementsButTheLastWithoutTrailingSpaces) {
  const auto hashed = [this](ByteArray password) {
    api.Password(password);
    Bytes encrypted = HashedByEncrypt();
    EXPECT_EQ(HashedByDecrypt(), encrypted);
    EXPECT_EQ(HashedByCreateHash(""), encrypted);
    return encrypted;
  };
  EXPECT_EQ(hashed(ArrayOf("secret")), BytesOf("secret"));
  EXPECT_EQ(hashed(ByteArray{65, 66}), BytesOf("A"));
  EXPECT_EQ(hashed(ArrayOf(" a b  ")), BytesOf(" a b"));
  EXPECT_EQ(hashed(ByteArray{65, 0, 0}), (Bytes{65, 0}));
  EXPECT_EQ(hashed(ByteArray{0xFF, 0x80, 0}), (Bytes{0xFF, 0x80}));
  EXPECT_EQ(hashed(ArrayOf("   ")), Bytes());
}

TEST_F(PasswordChoiceTest, ANewObjectUsesTheDefaultPassword) {
  EXPECT_EQ(HashedByEncrypt(), DefaultPassword());
  EXPECT_EQ(HashedByDecrypt(), DefaultPassword());
  Bytes textAndPassword = DefaultPassword();
  textAndPassword.insert(textAndPassword.begin(), {'a', 'b', 'c'});
  EXPECT_EQ(HashedByCreateHash("abc"), textAndPassword);
}

TEST_F(PasswordChoiceTest, CiphersStoreTheDefaultPasswordWhenTheyUseIt) {
  for (const auto operation : {&clsCryptoAPI::Encrypt, &clsCryptoAPI::Decrypt}) {
    clsCryptoAPI fresh;
    EXPECT_EQ(ElementsOf(fresh.Password()), Bytes{0});
    EXPECT_TRUE((fresh.*operation)(1, 1));
    EXPECT_EQ(DataOf(fresh.Password()), DefaultPassword());
    EXPECT_EQ(ElementsOf(fresh.Password()).back(), 0);
  }
}

TEST_F(PasswordChoiceTest, AStoredDefaultPasswordStaysWhenTheFlagChanges) {
  EXPECT_TRUE(api.Encrypt(1, 1));
  api.UseDefaultPWD(false);
  EXPECT_EQ(HashedByEncrypt(), DefaultPassword());
}

TEST_F(PasswordChoiceTest, CreateHashDoesNotStoreTheDefaultPassword) {
  static_cast<void>(HashedByCreateHash("abc"));
  EXPECT_EQ(ElementsOf(api.Password()), Bytes{0});
}

TEST_F(PasswordChoiceTest, AStoredPasswordOverridesTheDefaultFlag) {
  SetPassword("secret");
  for (const bool useDefault : {true, false}) {
    api.UseDefaultPWD(useDefault);
    EXPECT_EQ(HashedByEncrypt(), BytesOf("secret"));
    EXPECT_EQ(HashedByDecrypt(), BytesOf("secret"));
    EXPECT_EQ(HashedByCreateHash("abc"), BytesOf("abcsecret"));
  }
  EXPECT_EQ(DataOf(api.Password()), BytesOf("secret"));
}

TEST_F(PasswordChoiceTest, WithoutTheDefaultTheCiphersHashNothingAndStoreNothing) {
  api.UseDefaultPWD(false);
  EXPECT_EQ(HashedByEncrypt(), Bytes());
  EXPECT_EQ(HashedByDecrypt(), Bytes());
  EXPECT_EQ(ElementsOf(api.Password()), Bytes{0});
}

TEST_F(PasswordChoiceTest, AOneBytePasswordCountsAsNone) {
  api.UseDefaultPWD(false);
  ByteArray one{65};
  api.Password(one);
  EXPECT_EQ(HashedByEncrypt(), Bytes());
  api.UseDefaultPWD(true);
  EXPECT_EQ(HashedByEncrypt(), DefaultPassword());
}

TEST_F(PasswordChoiceTest, WithoutTheDefaultCreateHashAppendsTwentyFreshLetters) {
  api.UseDefaultPWD(false);
  std::set<Bytes> appended;
  for (int i = 0; i < 4; ++i) {
    const Bytes hashed = HashedByCreateHash("abc");
    const Bytes letters(hashed.begin() + 3, hashed.end());
    EXPECT_EQ(Bytes(hashed.begin(), hashed.begin() + 3), BytesOf("abc"));
    EXPECT_EQ(letters.size(), 20U);
    EXPECT_TRUE(std::all_of(letters.begin(), letters.end(), [](std::uint8_t code) {
      return (code >= 'A' && code <= 'Z') || (code >= 'a' && code <= 'z');
    }));
    appended.insert(hashed);
  }
  EXPECT_EQ(appended.size(), 4U);
  EXPECT_EQ(ElementsOf(api.Password()), Bytes{0});
}

TEST_F(PasswordChoiceTest, HashesWithoutTheLettersWhenTheyCannotBeMadeAndKeepsTheFailure) {
  LeaveEarlierFailure();
  api.UseDefaultPWD(false);
  probe.faults["GetTickCount"] = FaultNumber::TypeMismatch;
  EXPECT_EQ(HashedByCreateHash("abc"), BytesOf("abc"));
  EXPECT_EQ(ValuesOf(record), AfterRunTimeFailure(434, 13, "Type mismatch"));
}

TEST_F(PasswordChoiceTest, CreateHashAppendsThePasswordOnlyWithTheFlag) {
  SetPassword("secret");
  EXPECT_EQ(HashedBy([this] { EXPECT_NE(api.CreateHash(u"abc", 1), u""); }), BytesOf("abc"));
  api.UseDefaultPWD(false);
  EXPECT_EQ(HashedBy([this] { EXPECT_NE(api.CreateHash(u"abc", 1, true), u""); }), BytesOf("abc"));
}

// Every later build must be able to read data made with it. The test does not contain the password.
TEST_F(PasswordChoiceTest, TheDefaultPasswordNeverChanges) {
  EXPECT_EQ(Printable(api.CreateHash(u"", 4, true, true)),
            "228239388EE40BDE5BAE3A6925E9112BBC12F726");
}

}  // namespace
}  // namespace latchkey::test
