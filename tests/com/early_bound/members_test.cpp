// Every member of the three classes through its vtable slot, with known answers.
#include "tests/com/com_client.h"

namespace latchkey::test {
namespace {

constexpr short kMd5 = 1;
constexpr short kSha1 = 4;
constexpr short kRc4 = 1;
constexpr short kTripleDes = 4;

class MembersTest : public ClientTest {
 protected:
  Bytes Convert(VARIANT value) {
    SAFEARRAY* array = nullptr;
    EXPECT_EQ(Api()->StringToByteArray(&value, &array), S_OK);
    return Take(array);
  }

  Bytes Convert(VARTYPE type, long long payload) {
    VARIANT value = OfType(type);
    V_I8(&value) = payload;
    return Convert(value);
  }

  std::wstring ToText(const Bytes& bytes) {
    UniqueSafeArray array(MakeByteArray(bytes));
    SAFEARRAY* raw = array.Get();
    BSTR text = nullptr;
    EXPECT_EQ(Api()->ByteArrayToString(&raw, &text), S_OK);
    return Take(text);
  }

  void PutPassword(const Bytes& bytes) {
    SAFEARRAY* array = MakeByteArray(bytes);
    EXPECT_EQ(Api()->put_Password(&array), S_OK);
    const UniqueSafeArray owner(array);
  }

  void PutInput(const Bytes& bytes) {
    UniqueSafeArray array(MakeByteArray(bytes));
    SAFEARRAY* raw = array.Get();
    EXPECT_EQ(Api()->put_InputData(&raw), S_OK);
    EXPECT_EQ(raw, array.Get());
  }

  SAFEARRAY* Output() {
    SAFEARRAY* array = nullptr;
    EXPECT_EQ(Api()->get_OutputData(&array), S_OK);
    return array;
  }
};

TEST_F(MembersTest, CreateHashGivesThePublishedDigestsOfAbc) {
  EXPECT_EQ(Hash(L"abc", kMd5), L"900150983CD24FB0D6963F7D28E17F72");           // RFC 1321
  EXPECT_EQ(Hash(L"abc", kSha1), L"A9993E364706816ABA3E25717850C26C9CD0D89D");  // RFC 3174
}

TEST_F(MembersTest, CreateHashTakesANullStringForTheEmptyText) {
  BSTR digest = nullptr;
  ASSERT_EQ(Api()->CreateHash(nullptr, kMd5, VARIANT_TRUE, VARIANT_FALSE, VARIANT_FALSE, &digest),
            S_OK);
  EXPECT_EQ(Take(digest), L"D41D8CD98F00B204E9800998ECF8427E");  // RFC 1321
}

TEST_F(MembersTest, CreateHashAppendsThePasswordWhenAsked) {
  PutPassword(TextArray("bc"));
  BSTR digest = nullptr;
  ASSERT_EQ(
      Api()->CreateHash(Bstr(L"a").Get(), kMd5, VARIANT_TRUE, VARIANT_TRUE, VARIANT_FALSE, &digest),
      S_OK);
  EXPECT_EQ(Take(digest), L"900150983CD24FB0D6963F7D28E17F72");
}

TEST_F(MembersTest, EncryptGivesTheMeasuredCiphertextOfTheBaseProvider) {
  // Measured on a Windows CryptoAPI: base provider, MD5, RC4.
  PutPassword(TextArray("correct horse battery staple"));
  PutInput({0x04, 0x09, 0x0E, 0x13, 0});
  EXPECT_EQ(Encrypt(kMd5, kRc4), VARIANT_TRUE);
  EXPECT_EQ(Take(Output()), (Bytes{0x1A, 0x95, 0x44, 0xBD, 0}));
}

TEST_F(MembersTest, EncryptGivesTheMeasuredCiphertextOfTheEnhancedProvider) {
  // Measured on a Windows CryptoAPI: enhanced provider, MD5, 3DES.
  UseEnhancedProvider(true);
  PutPassword(TextArray("correct horse battery staple"));
  PutInput({0x04, 0x09, 0x0E, 0x13, 0});
  EXPECT_EQ(Encrypt(kMd5, kTripleDes), VARIANT_TRUE);
  EXPECT_EQ(Take(Output()), (Bytes{0x3C, 0xD8, 0xCB, 0xEA, 0x71, 0x0A, 0x09, 0x6A, 0}));
}

TEST_F(MembersTest, DecryptUndoesEncryptWithTheEnhancedProvider) {
  UseEnhancedProvider(true);
  PutPassword(TextArray("a secret"));
  PutInput(TextArray("attack at dawn"));
  ASSERT_EQ(Encrypt(kSha1, kTripleDes), VARIANT_TRUE);
  const Bytes encrypted = Take(Output());
  EXPECT_EQ(encrypted.size(), 17U);
  EXPECT_NE(encrypted, TextArray("attack at dawn"));
  PutInput(encrypted);
  EXPECT_EQ(Decrypt(kSha1, kTripleDes), VARIANT_TRUE);
  EXPECT_EQ(Take(Output()), TextArray("attack at dawn"));
}

TEST_F(MembersTest, EnhancedProviderIsReadThroughItsReference) {
  UseEnhancedProvider(false);
  PutInput(TextArray("attack at dawn"));
  EXPECT_EQ(Encrypt(kMd5, kTripleDes), VARIANT_FALSE);
}

TEST_F(MembersTest, OutputDataIsANullArrayBeforeTheFirstOperationAndAfterAFailedEncrypt) {
  EXPECT_EQ(Output(), nullptr);
  EXPECT_EQ(Encrypt(0, 0), VARIANT_FALSE);
  EXPECT_EQ(Output(), nullptr);
}

TEST_F(MembersTest, OutputDataIsASingleZeroAfterAFailedDecrypt) {
  EXPECT_EQ(Decrypt(0, 0), VARIANT_FALSE);
  EXPECT_EQ(Take(Output()), Bytes{0});
}

TEST_F(MembersTest, PasswordReturnsTheStoredArray) {
  PutPassword({'a', 'b', 0});
  EXPECT_EQ(StoredPassword(), (Bytes{'a', 'b', 0}));
}

TEST_F(MembersTest, UseDefaultPWDDecidesWhatAPasswordOfOneByteBecomes) {
  UseDefaultPassword(false);
  PutPassword({'x'});
  EXPECT_EQ(StoredPassword(), Bytes{0});
  UseDefaultPassword(true);
  PutPassword({'x'});
  EXPECT_GT(StoredPassword().size(), 2U);
}

TEST_F(MembersTest, CreateRandomReturnsTheRequestedNumberOfHexadecimalDigits) {
  BSTR random = nullptr;
  ASSERT_EQ(Api()->CreateRandom(16, VARIANT_TRUE, VARIANT_TRUE, VARIANT_FALSE, &random), S_OK);
  const std::wstring digits = Take(random);
  EXPECT_EQ(digits.size(), 16U);
  EXPECT_EQ(digits.find_first_not_of(L"0123456789ABCDEF"), std::wstring::npos);
}

TEST_F(MembersTest, CreateSaltValueGivesAVariantThatHoldsText) {
  ScopedVariant salt;
  ASSERT_EQ(Api()->CreateSaltValue(20, VARIANT_TRUE, &salt.Get()), S_OK);
  ASSERT_EQ(V_VT(&salt.Get()), VT_BSTR);
  const std::wstring letters(V_BSTR(&salt.Get()));
  EXPECT_EQ(letters.size(), 20U);
  EXPECT_EQ(letters.find_first_not_of(L"ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz"),
            std::wstring::npos);
}

TEST_F(MembersTest, ByteArrayToStringOmitsTheLastElementAndTrailingSpaces) {
  EXPECT_EQ(ToText({65, 66, 67}), L"AB");
  EXPECT_EQ(ToText({65, 32, 32, 0}), L"A");
  EXPECT_EQ(ToText({0}), L"");
}

TEST_F(MembersTest, StringToByteArrayAddsAZeroElement) {
  const UniqueBstr text = Bstr(L"abc");
  EXPECT_EQ(Convert(VT_BSTR, reinterpret_cast<std::intptr_t>(text.Get())), TextArray("abc"));
  EXPECT_EQ(Convert(VT_BSTR, 0), Bytes{0});
}

TEST_F(MembersTest, StringToByteArrayTakesTheTextFormOfOtherValues) {
  EXPECT_EQ(Convert(VT_I4, 12), TextArray("12"));
  EXPECT_EQ(Convert(VT_I2, 0xFFFF), TextArray("-1"));
  EXPECT_EQ(Convert(VT_BOOL, 0xFFFF), TextArray("True"));
  EXPECT_EQ(Convert(VT_EMPTY, 0), Bytes{0});
  EXPECT_EQ(Convert(Value(0.5)), TextArray("0.5"));
}

TEST_F(MembersTest, StringToByteArrayLooksThroughReferences) {
  UniqueBstr text = Bstr(L"abc");
  BSTR raw = text.Get();
  VARIANT reference = OfType(VT_BYREF | VT_BSTR);
  V_BSTRREF(&reference) = &raw;
  EXPECT_EQ(Convert(reference), TextArray("abc"));
  const VARIANT outer = ReferenceTo(reference);
  EXPECT_EQ(Convert(outer), TextArray("abc"));
  LONG number = 12;
  reference = OfType(VT_BYREF | VT_I4);
  V_I4REF(&reference) = &number;
  EXPECT_EQ(Convert(outer), TextArray("12"));
}

TEST_F(MembersTest, HexadecimalConvertsBothWaysWithNulCharacters) {
  const std::wstring raw{L'A', L'\0', L'\n'};
  VARIANT_BOOL upperCase = VARIANT_TRUE;
  BSTR hex = nullptr;
  ASSERT_EQ(Api()->ConvertStringToHex(Bstr(raw).Get(), &upperCase, &hex), S_OK);
  const UniqueBstr owner(hex);
  ASSERT_STREQ(hex, L"41000A");
  BSTR text = nullptr;
  ASSERT_EQ(Api()->ConvertStringFromHex(hex, &text), S_OK);
  EXPECT_EQ(Take(text), raw);
}

TEST_F(MembersTest, AnOddByteAtTheEndOfAStringIsIgnored) {
  const UniqueBstr text(SysAllocStringByteLen("A\0B", 3));
  VARIANT_BOOL upperCase = VARIANT_TRUE;
  BSTR hex = nullptr;
  ASSERT_EQ(Api()->ConvertStringToHex(text.Get(), &upperCase, &hex), S_OK);
  EXPECT_EQ(Take(hex), L"41");
}

TEST_F(MembersTest, TheTimerCountsFromItsStart) {
  const auto timer = CreateTimer();
  LONG first = -1;
  LONG second = -1;
  ASSERT_EQ(timer.Get()->GetElapsedTime(&first), S_OK);
  ASSERT_EQ(timer.Get()->GetElapsedTime(&second), S_OK);
  EXPECT_GE(first, 0);
  EXPECT_GE(second, first);
  EXPECT_EQ(timer.Get()->Start(), S_OK);
}

TEST_F(MembersTest, DoesInternetConnectionExistGivesABoolean) {
  VARIANT_BOOL exists = 1;
  ASSERT_EQ(Main()->DoesInternetConnectionExist(&exists), S_OK);
  EXPECT_TRUE(exists == VARIANT_TRUE || exists == VARIANT_FALSE);
  VARIANT_BOOL failed = VARIANT_TRUE;
  ASSERT_EQ(Main()->get_ErrorExists(&failed), S_OK);
  EXPECT_EQ(failed, VARIANT_FALSE);
}

}  // namespace
}  // namespace latchkey::test
