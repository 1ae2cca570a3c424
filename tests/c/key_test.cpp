// Keys: what settings give, which ones are refused, and the owners of a key.
#include <gtest/gtest.h>

#include <string>

#include "latchkey/cls_crypto_api.h"
#include "latchkey/cls_main.h"
#include "tests/c/client.h"

namespace latchkey::test {
namespace {

constexpr Reason kBadArgument{LATCHKEY_BAD_ARGUMENT, 0, 0};
constexpr Reason kBadCipher{LATCHKEY_BAD_CIPHER, 719, 121};
constexpr Reason kKeyFailed{LATCHKEY_KEY_FAILED, 723, 119};

// A message under the key; different keys give different ones.
Bytes MessageUnder(const latchkey_settings& settings) {
  return Encrypted(OpenKey(settings), BytesOf("the same text for every key"));
}

TEST(CKeyTest, AnyProviderIsBaseWhereBaseHasTheCipher) {
  for (const std::int32_t cipher : {LATCHKEY_RC4, LATCHKEY_RC2, LATCHKEY_DES}) {
    EXPECT_EQ(MessageUnder(SettingsOf(LATCHKEY_SHA1, cipher)),
              MessageUnder(SettingsOf(LATCHKEY_SHA1, cipher, LATCHKEY_BASE)));
  }
}

TEST(CKeyTest, AnyProviderIsEnhancedWhereBaseLacksTheCipherOrTheBits) {
  for (const auto& [cipher, keyBits, effectiveBits] :
       {std::tuple{LATCHKEY_3DES, 0U, 0U}, std::tuple{LATCHKEY_3DES_112, 0U, 0U},
        std::tuple{LATCHKEY_RC4, 64U, 0U}, std::tuple{LATCHKEY_RC2, 128U, 0U},
        std::tuple{LATCHKEY_RC2, 0U, 40U}}) {
    EXPECT_EQ(
        MessageUnder(SettingsOf(LATCHKEY_SHA1, cipher, 0, keyBits, effectiveBits)),
        MessageUnder(SettingsOf(LATCHKEY_SHA1, cipher, LATCHKEY_ENHANCED, keyBits, effectiveBits)))
        << cipher << ' ' << keyBits << ' ' << effectiveBits;
  }
}

TEST(CKeyTest, TheProviderSetsTheLengthOfRc4AndRc2Keys) {
  for (const std::int32_t cipher : {LATCHKEY_RC4, LATCHKEY_RC2}) {
    const Bytes base = MessageUnder(SettingsOf(LATCHKEY_SHA1, cipher, LATCHKEY_BASE));
    const Bytes enhanced = MessageUnder(SettingsOf(LATCHKEY_SHA1, cipher, LATCHKEY_ENHANCED));
    EXPECT_NE(base, enhanced);
    EXPECT_EQ(MessageUnder(SettingsOf(LATCHKEY_SHA1, cipher, LATCHKEY_ENHANCED, 40)), base);
    EXPECT_EQ(MessageUnder(SettingsOf(LATCHKEY_SHA1, cipher, LATCHKEY_ENHANCED, 128)), enhanced);
  }
  EXPECT_EQ(MessageUnder(SettingsOf(LATCHKEY_SHA1, LATCHKEY_DES, LATCHKEY_BASE)),
            MessageUnder(SettingsOf(LATCHKEY_SHA1, LATCHKEY_DES, LATCHKEY_ENHANCED)));
}

// A ciphertext of a program on Windows: RC2 with 80 bits.
TEST(CKeyTest, EightyBitsReadDataFromWindows) {
  const Key key = OpenKey(SettingsOf(LATCHKEY_MD5, LATCHKEY_RC2, 0, 80), "PNEMAIL");
  const Bytes ciphertext = FromHex("DC3D962329DD1B2F");
  EXPECT_EQ(Hex(Decrypted(key, ciphertext)), "42463041433431");
  EXPECT_EQ(Encrypted(key, FromHex("42463041433431")), ciphertext);
}

TEST(CKeyTest, EffectiveBitsFollowTheKeyBitsUnlessGiven) {
  const auto under = [](std::uint32_t keyBits, std::uint32_t effectiveBits) {
    return MessageUnder(
        SettingsOf(LATCHKEY_MD5, LATCHKEY_RC2, LATCHKEY_ENHANCED, keyBits, effectiveBits));
  };
  EXPECT_EQ(under(80, 0), under(80, 80));
  EXPECT_NE(under(80, 0), under(80, 40));
  EXPECT_EQ(under(0, 0), under(128, 128));
  EXPECT_EQ(under(0, 40), under(128, 40));
  EXPECT_NE(under(0, 1), under(0, 1024));
}

TEST(CKeyTest, KeyBitsAreFortyTo56OrTo128InStepsOfEight) {
  for (const std::int32_t provider : {LATCHKEY_ANY_PROVIDER, LATCHKEY_BASE, LATCHKEY_ENHANCED}) {
    const std::uint32_t most = provider == LATCHKEY_BASE ? 56 : 128;
    for (std::uint32_t bits = 1; bits <= 256; ++bits) {
      const bool allowed = bits >= 40 && bits <= most && bits % 8 == 0;
      for (const std::int32_t cipher : {LATCHKEY_RC4, LATCHKEY_RC2}) {
        EXPECT_EQ(RefusalOf(SettingsOf(LATCHKEY_MD5, cipher, provider, bits)),
                  allowed ? Reason{} : kKeyFailed)
            << provider << ' ' << cipher << ' ' << bits;
      }
    }
  }
}

// The flags of CryptDeriveKey have 16 bits for the length.
TEST(CKeyTest, KeyBitsBeyond16BitsAreRefused) {
  for (const std::uint32_t bits : {0x10000U, 0x10040U, 0x10080U, 0x80000000U, 0xFFFFFFFFU}) {
    EXPECT_EQ(RefusalOf(SettingsOf(LATCHKEY_MD5, LATCHKEY_RC4, LATCHKEY_ENHANCED, bits)),
              kKeyFailed)
        << bits;
  }
}

TEST(CKeyTest, OtherCiphersRefuseKeyBits) {
  for (const std::int32_t cipher : {LATCHKEY_DES, LATCHKEY_3DES, LATCHKEY_3DES_112}) {
    for (const std::uint32_t bits : {40U, 56U, 64U, 112U, 128U}) {
      EXPECT_EQ(RefusalOf(SettingsOf(LATCHKEY_MD5, cipher, LATCHKEY_ENHANCED, bits)), kKeyFailed)
          << cipher << ' ' << bits;
    }
  }
}

TEST(CKeyTest, EffectiveBitsAreForRc2AndWithBaseFortyOnly) {
  const auto refusal = [](std::int32_t cipher, std::int32_t provider, std::uint32_t bits) {
    return RefusalOf(SettingsOf(LATCHKEY_MD5, cipher, provider, 0, bits));
  };
  EXPECT_EQ(refusal(LATCHKEY_RC2, LATCHKEY_BASE, 40), Reason{});
  EXPECT_EQ(refusal(LATCHKEY_RC2, LATCHKEY_BASE, 41), kKeyFailed);
  EXPECT_EQ(refusal(LATCHKEY_RC2, LATCHKEY_ENHANCED, 1), Reason{});
  EXPECT_EQ(refusal(LATCHKEY_RC2, LATCHKEY_ENHANCED, 1024), Reason{});
  EXPECT_EQ(refusal(LATCHKEY_RC2, LATCHKEY_ENHANCED, 1025), kKeyFailed);
  for (const std::int32_t cipher : {LATCHKEY_RC4, LATCHKEY_DES, LATCHKEY_3DES, LATCHKEY_3DES_112}) {
    EXPECT_EQ(refusal(cipher, LATCHKEY_ENHANCED, 40), kKeyFailed) << cipher;
  }
}

TEST(CKeyTest, UnknownHashesAreRefused) {
  for (const std::int32_t hash : {0, 5, -1, 65537, INT32_MAX, INT32_MIN}) {
    EXPECT_EQ(RefusalOf(SettingsOf(hash, LATCHKEY_RC4)), (Reason{LATCHKEY_BAD_HASH, 718, 115}))
        << hash;
  }
}

TEST(CKeyTest, UnknownCiphersAreRefusedAsAreThoseThatTheProviderLacks) {
  for (const std::int32_t cipher : {0, 6, -1, 65537, INT32_MAX, INT32_MIN}) {
    EXPECT_EQ(RefusalOf(SettingsOf(LATCHKEY_MD5, cipher)), kBadCipher) << cipher;
  }
  for (const std::int32_t cipher : {LATCHKEY_3DES, LATCHKEY_3DES_112}) {
    EXPECT_EQ(RefusalOf(SettingsOf(LATCHKEY_MD5, cipher, LATCHKEY_BASE)), kBadCipher) << cipher;
  }
}

TEST(CKeyTest, UnknownProvidersFlagsAndSizesAreBadArguments) {
  for (const std::int32_t provider : {-1, 3, INT32_MAX}) {
    EXPECT_EQ(RefusalOf(SettingsOf(LATCHKEY_MD5, LATCHKEY_RC4, provider)), kBadArgument);
  }
  latchkey_settings settings = SettingsOf(LATCHKEY_MD5, LATCHKEY_RC4);
  for (const std::uint32_t flags : {2U, 3U, 0x80000000U}) {
    settings.flags = flags;
    EXPECT_EQ(RefusalOf(settings, ""), kBadArgument) << flags;
  }
  settings.flags = 0;
  for (const std::uint32_t size : {0U, 4U, 27U, 29U, 0xFFFFFFFFU}) {
    settings.size = size;
    EXPECT_EQ(RefusalOf(settings), kBadArgument) << size;
  }
}

// The component uses this password if none is set.
TEST(CKeyTest, TheDefaultPasswordIsTheComponents) {
  latchkey_settings settings = SettingsOf(LATCHKEY_MD5, LATCHKEY_RC4);
  settings.flags = LATCHKEY_DEFAULT_PASSWORD;
  const Bytes ciphertext = Encrypted(OpenKey(settings, ""), BytesOf("text"));

  const clsMain main;
  clsCryptoAPI api;
  api.InputData(ArrayOf("text"));
  ASSERT_TRUE(api.Encrypt(LATCHKEY_MD5, LATCHKEY_RC4));
  EXPECT_EQ(ciphertext, DataOf(api.OutputData()));
  EXPECT_EQ(RefusalOf(settings, "x"), kBadArgument) << "two passwords";
}

TEST(CKeyTest, TheEmptyPasswordIsAPassword) {
  const latchkey_settings settings = SettingsOf(LATCHKEY_MD5, LATCHKEY_RC4);
  latchkey_settings withDefault = settings;
  withDefault.flags = LATCHKEY_DEFAULT_PASSWORD;
  const Bytes text = BytesOf("text");
  const Bytes ciphertext = Encrypted(OpenKey(settings, ""), text);
  EXPECT_NE(ciphertext, Encrypted(OpenKey(withDefault, ""), text));
  EXPECT_NE(ciphertext, Encrypted(OpenKey(settings, std::string(1, '\0')), text));
  EXPECT_EQ(ciphertext, Encrypted(OpenKey(settings, std::span<const std::uint8_t>()), text));
}

TEST(CKeyTest, PasswordsAreExactBytes) {
  const auto under = [](std::string_view password) {
    return Encrypted(OpenKey(SettingsOf(LATCHKEY_MD5, LATCHKEY_RC4), password), BytesOf("text"));
  };
  EXPECT_NE(under("secret"), under("secret "));
  EXPECT_NE(under("secret"), under(std::string("secret\0", 7)));
  EXPECT_NE(under("secret"), under("Secret"));
}

TEST(CKeyTest, EveryOwnerClosesItOnce) {
  latchkey_key* key = OpenKey().Release();
  const Bytes expected = Encrypted(key, BytesOf("text"));
  ASSERT_EQ(latchkey_key_share(key), LATCHKEY_OK);
  ASSERT_EQ(latchkey_key_share(key), LATCHKEY_OK);
  EXPECT_EQ(latchkey_key_close(key), LATCHKEY_OK);
  EXPECT_EQ(latchkey_key_close(key), LATCHKEY_OK);
  EXPECT_EQ(Encrypted(key, BytesOf("text")), expected) << "with the last owner";
  EXPECT_EQ(latchkey_key_close(key), LATCHKEY_OK);
}

}  // namespace
}  // namespace latchkey::test
