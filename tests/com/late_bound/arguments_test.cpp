// Arguments of late-bound calls: by position and by name, omitted, by value and by reference, of
// the declared type and of others.
#include <algorithm>
#include <string>
#include <tuple>

#include "tests/com/late_bound/late_client.h"

namespace latchkey::test {
namespace {

constexpr const wchar_t* kMd5OfAbc = L"900150983CD24FB0D6963F7D28E17F72";  // RFC 1321

class ArgumentsTest : public LateClientTest {
 protected:
  // Looks up the numbers of a member and of its arguments.
  HRESULT FindIds(std::vector<std::wstring> names, std::vector<DISPID>& ids) {
    std::vector<wchar_t*> texts;
    texts.reserve(names.size());
    for (std::wstring& name : names) texts.push_back(name.data());
    ids.assign(names.size(), -7);
    return Api()->GetIDsOfNames(IID_NULL, texts.data(), static_cast<UINT>(texts.size()),
                                LOCALE_USER_DEFAULT, ids.data());
  }

  UniqueBstr abc = Bstr(L"abc");
};

TEST_F(ArgumentsTest, AllMayBePassedByPosition) {
  const Outcome outcome = api.Call(
      L"CreateHash", {Value(abc.Get()), Value(1), Value(true), Value(false), Value(false)});
  EXPECT_EQ(outcome.result, S_OK);
  EXPECT_EQ(outcome.text, kMd5OfAbc);
}

TEST_F(ArgumentsTest, NamesOfMembersAndArgumentsAreFoundInAnyCase) {
  std::vector<DISPID> ids;
  ASSERT_EQ(FindIds({L"createHASH", L"INTHASHCHOICE"}, ids), S_OK);
  EXPECT_EQ(ids, (std::vector<DISPID>{api.IdOf(L"CreateHash"), 1}));
}

TEST_F(ArgumentsTest, UnknownMembersAndArgumentsHaveDifferentResults) {
  std::vector<DISPID> ids;
  EXPECT_EQ(FindIds({L"CreateHash", L"strNothing"}, ids), DISP_E_UNKNOWNNAME);
  EXPECT_EQ(ids[1], DISPID_UNKNOWN);
  EXPECT_EQ(api.IdOf(L"Nothing"), DISPID_UNKNOWN);
}

TEST_F(ArgumentsTest, AnUnknownNameLeavesTheOthersFound) {
  std::vector<DISPID> ids;
  EXPECT_EQ(FindIds({L"CreateHash", L"strNothing", L"blnConvertToHex"}, ids), DISP_E_UNKNOWNNAME);
  EXPECT_EQ(ids, (std::vector<DISPID>{api.IdOf(L"CreateHash"), DISPID_UNKNOWN, 2}));
}

// Only whole names match, and neither results nor the members of every interface have one.
TEST_F(ArgumentsTest, OnlyCallableMembersHaveANumber) {
  for (const wchar_t* const name :
       {L"CreateHas", L"CreateHash1", L"", L"QueryInterface", L"Invoke"}) {
    EXPECT_EQ(api.IdOf(name), DISPID_UNKNOWN) << name;
  }
  std::vector<DISPID> ids;
  EXPECT_EQ(FindIds({L"CreateHash", L"result"}, ids), DISP_E_UNKNOWNNAME);
  EXPECT_EQ(ids[1], DISPID_UNKNOWN);
}

// The numbers and positions of all names are those of the type information.
TEST_F(ArgumentsTest, EveryNameHasItsNumberInTheTypeLibrary) {
  UniqueInterface<ITypeInfo> found;
  ASSERT_EQ(Api()->GetTypeInfo(0, LOCALE_USER_DEFAULT, found.Put()), S_OK);
  int members = 0;
  for (DISPID id = 1; id < 100; ++id) {
    BSTR names[20] = {};
    UINT count = 0;
    if (FAILED(found.Get()->GetNames(id, names, 20, &count))) continue;
    ++members;
    DISPID expected[20] = {};
    DISPID given[20] = {};
    ASSERT_EQ(found.Get()->GetIDsOfNames(names, count, expected), S_OK);
    EXPECT_EQ(Api()->GetIDsOfNames(IID_NULL, names, count, LOCALE_USER_DEFAULT, given), S_OK) << id;
    EXPECT_TRUE(std::equal(expected, expected + count, given)) << id;
    std::for_each(names, names + count, [](BSTR name) { SysFreeString(name); });
  }
  EXPECT_GT(members, 10);
}

TEST_F(ArgumentsTest, MayBePassedByNameInAnyOrder) {
  const Outcome outcome =
      api.CallNamed(L"CreateHash", {{2, Value(true)}, {0, Value(abc.Get())}, {1, Value(1)}});
  EXPECT_EQ(outcome.result, S_OK);
  EXPECT_EQ(outcome.text, kMd5OfAbc);
}

TEST_F(ArgumentsTest, NamedOnesMayFollowThoseByPosition) {
  const Outcome outcome =
      api.CallNamed(L"CreateHash", {{2, Value(true)}, {1, Value(1)}}, {Value(abc.Get())});
  EXPECT_EQ(outcome.text, kMd5OfAbc);
}

TEST_F(ArgumentsTest, OmittedOnesGetTheirDefaults) {
  // No hash number: refused by the provider, nothing recorded.
  EXPECT_EQ(api.Call(L"CreateHash").text, L"");
  EXPECT_EQ(main.Get(L"ErrorExists").number, VARIANT_FALSE);
  const Outcome inTheMiddle =
      api.Call(L"CreateHash", {LeftOut(), Value(1), Value(true), LeftOut()});
  EXPECT_EQ(inTheMiddle.result, S_OK);
  EXPECT_EQ(inTheMiddle.text, L"D41D8CD98F00B204E9800998ECF8427E");  // RFC 1321, empty text
  const Outcome operation = api.Call(L"Encrypt");
  EXPECT_EQ(operation.type, VT_BOOL);
  EXPECT_EQ(operation.number, VARIANT_FALSE);
  EXPECT_EQ(main.Get(L"ErrorLocationID").number, 718);
  EXPECT_EQ(api.Call(L"CreateSaltValue").text, L"");
  EXPECT_EQ(api.Call(L"CreateRandom", {Value(0), Value(true)}).text, L"");
}

TEST_F(ArgumentsTest, AnOmittedBooleanByReferenceGetsItsDefault) {
  EXPECT_EQ(api.Call(L"ConvertStringToHex", {Value(abc.Get())}).text, L"616263");
  EXPECT_EQ(api.Call(L"ConvertStringToHex", {Value(abc.Get()), LeftOut()}).text, L"616263");
}

TEST_F(ArgumentsTest, AWrongNumberIsRefused) {
  EXPECT_EQ(api.Call(L"ConvertStringFromHex").result, DISP_E_BADPARAMCOUNT);
  EXPECT_EQ(api.Call(L"Encrypt", {Value(1), Value(1), Value(1)}).result, DISP_E_BADPARAMCOUNT);
  EXPECT_EQ(api.Call(L"ConvertStringToHex").result, DISP_E_BADPARAMCOUNT);
  DISPPARAMS none = {};
  EXPECT_EQ(api.Invoke(api.IdOf(L"Password"), DISPATCH_PROPERTYPUT, &none).result,
            DISP_E_BADPARAMCOUNT);
}

TEST_F(ArgumentsTest, ARequiredOneCannotBeOmitted) {
  const Outcome outcome = api.Call(L"ConvertStringToHex", {LeftOut(), Value(true)});
  EXPECT_EQ(outcome.result, DISP_E_PARAMNOTOPTIONAL);
  EXPECT_EQ(outcome.badArgument, 1U);
}

TEST_F(ArgumentsTest, AnUnknownNameAndANameGivenTwiceAreNotFound) {
  const Outcome unknown = api.CallNamed(L"Encrypt", {{7, Value(1)}});
  EXPECT_EQ(unknown.result, DISP_E_PARAMNOTFOUND);
  EXPECT_EQ(unknown.badArgument, 0U);
  EXPECT_EQ(api.CallNamed(L"Encrypt", {{-1, Value(1)}}).result, DISP_E_PARAMNOTFOUND);
  EXPECT_EQ(api.CallNamed(L"Encrypt", {{0, Value(1)}}, {Value(1)}).result, DISP_E_PARAMNOTFOUND);
  EXPECT_EQ(api.CallNamed(L"Encrypt", {{DISPID_PROPERTYPUT, Value(1)}}).result,
            DISP_E_PARAMNOTFOUND);
}

TEST_F(ArgumentsTest, ValuesOfOtherTypesAreConverted) {
  const UniqueBstr one = Bstr(L"1");
  const UniqueBstr wordTrue = Bstr(L"True");
  VARIANT real = OfType(VT_R8);
  V_R8(&real) = 1.0;
  EXPECT_EQ(
      api.Call(L"CreateHash", {Value(abc.Get()), Value(one.Get()), Value(wordTrue.Get())}).text,
      kMd5OfAbc);
  EXPECT_EQ(api.Call(L"CreateHash", {Value(abc.Get()), real, Value(1)}).text, kMd5OfAbc);
  EXPECT_EQ(api.Call(L"ConvertStringToHex", {Value(12)}).text, L"3132");
  EXPECT_EQ(api.Call(L"ConvertStringToHex", {OfType(VT_EMPTY)}).text, L"");
}

TEST_F(ArgumentsTest, VariablesPassedByReferenceAreRead) {
  VARIANT text = Value(abc.Get());
  VARIANT number = Value(1);
  VARIANT flag = Value(true);
  VARIANT outer = ReferenceTo(number);
  EXPECT_EQ(
      api.Call(L"CreateHash", {ReferenceTo(text), ReferenceTo(outer), ReferenceTo(flag)}).text,
      kMd5OfAbc);
  LONG plain = 1;
  VARIANT plainReference = OfType(VT_BYREF | VT_I4);
  V_I4REF(&plainReference) = &plain;
  EXPECT_EQ(api.Call(L"CreateHash", {Value(abc.Get()), plainReference, Value(true)}).text,
            kMd5OfAbc);
}

TEST_F(ArgumentsTest, AValueThatDoesNotConvertNamesItsArgument) {
  const Outcome word = api.Call(L"CreateHash", {Value(abc.Get()), Value(abc.Get()), Value(true)});
  EXPECT_EQ(word.result, DISP_E_TYPEMISMATCH);
  EXPECT_EQ(word.badArgument, 1U);
  const Outcome large = api.Call(L"Encrypt", {Value(70000), Value(1)});
  EXPECT_EQ(large.result, DISP_E_OVERFLOW);
  EXPECT_EQ(large.badArgument, 1U);
  const Outcome null = api.Call(L"ConvertStringToHex", {OfType(VT_NULL)});
  EXPECT_EQ(null.result, DISP_E_TYPEMISMATCH);
  EXPECT_EQ(null.badArgument, 0U);
}

TEST_F(ArgumentsTest, ABooleanByReferenceTakesAnyShape) {
  VARIANT_BOOL own = VARIANT_TRUE;
  VARIANT number = Value(1);
  const UniqueBstr word = Bstr(L"True");
  for (const VARIANT& shape :
       {Value(true), ReferenceTo(own), ReferenceTo(number), Value(-1), Value(word.Get())}) {
    ASSERT_EQ(api.Put(L"EnhancedProvider", shape).result, S_OK);
    ASSERT_EQ(api.Call(L"Encrypt", {Value(1), Value(4)}).result, S_OK);
    EXPECT_NE(main.Get(L"ErrorLocationID").number, 719) << V_VT(&shape);
    ASSERT_EQ(api.Put(L"EnhancedProvider", Value(false)).result, S_OK);
    ASSERT_EQ(api.Call(L"Encrypt", {Value(1), Value(4)}).result, S_OK);
    EXPECT_EQ(main.Get(L"ErrorLocationID").number, 719);
  }
  EXPECT_EQ(own, VARIANT_TRUE);
}

TEST_F(ArgumentsTest, APropertyPutWorksWithAndWithoutItsName) {
  VARIANT value = Value(false);
  DISPPARAMS unnamed = {&value, nullptr, 1, 0};
  EXPECT_EQ(api.Invoke(api.IdOf(L"UseDefaultPWD"), DISPATCH_PROPERTYPUT, &unnamed).result, S_OK);
  EXPECT_EQ(api.Put(L"UseDefaultPWD", value, DISPATCH_PROPERTYPUTREF).result, S_OK);
  EXPECT_EQ(api.Put(L"UseDefaultPWD", value, DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF).result,
            S_OK);
}

TEST_F(ArgumentsTest, AVariantReachesStringToByteArrayUnchanged) {
  EXPECT_EQ(api.Call(L"StringToByteArray", {Value(abc.Get())}).bytes, TextArray("abc"));
  EXPECT_EQ(api.Call(L"StringToByteArray", {Value(12)}).bytes, TextArray("12"));
  EXPECT_EQ(api.Call(L"StringToByteArray", {Value(true)}).bytes, TextArray("True"));
  VARIANT variable = Value(abc.Get());
  EXPECT_EQ(api.Call(L"StringToByteArray", {ReferenceTo(variable)}).bytes, TextArray("abc"));
  ExpectException(api.Call(L"StringToByteArray", {OfType(VT_NULL)}), 94, L"Invalid use of Null");
  VARIANT null = OfType(VT_NULL);
  ExpectException(api.Call(L"StringToByteArray", {ReferenceTo(null)}), 94, L"Invalid use of Null");
}

// German writes 1,5 and 24.12.1999, English (United States) 1.5 and 12/24/1999.
TEST_F(ArgumentsTest, TextIsWrittenInTheCallersLocale) {
  const LCID german = MAKELCID(MAKELANGID(LANG_GERMAN, SUBLANG_GERMAN), SORT_DEFAULT);
  const LCID english = MAKELCID(MAKELANGID(LANG_ENGLISH, SUBLANG_ENGLISH_US), SORT_DEFAULT);
  VARIANT date = OfType(VT_DATE);
  V_DATE(&date) = 36518;
  VARIANT number = Value(1.5);
  for (const auto& [locale, half, day] :
       {std::tuple{german, "1,5", "24.12.1999"}, std::tuple{english, "1.5", "12/24/1999"}}) {
    api.Speak(locale);
    EXPECT_EQ(api.Call(L"StringToByteArray", {number}).bytes, TextArray(half));
    EXPECT_EQ(api.Call(L"StringToByteArray", {ReferenceTo(number)}).bytes, TextArray(half));
    EXPECT_EQ(api.Call(L"StringToByteArray", {date}).bytes, TextArray(day));
    const std::wstring hex = api.Call(L"ConvertStringToHex", {number}).text;
    EXPECT_EQ(hex, half == std::string("1,5") ? L"312C35" : L"312E35");
  }
  EXPECT_EQ(V_VT(&number), VT_R8);
}

TEST_F(ArgumentsTest, TextIsReadInTheCallersLocale) {
  const UniqueBstr four = Bstr(L"4,0");
  api.Speak(MAKELCID(MAKELANGID(LANG_GERMAN, SUBLANG_GERMAN), SORT_DEFAULT));
  EXPECT_EQ(api.Call(L"CreateHash", {Value(abc.Get()), Value(four.Get()), Value(true)}).text,
            L"A9993E364706816ABA3E25717850C26C9CD0D89D");  // RFC 3174
}

TEST_F(ArgumentsTest, TheResultMayReplaceAnArgument) {
  ScopedVariant slot;
  slot.Get() = Value(Bstr(L"616263").Release());
  const BSTR text = V_BSTR(&slot.Get());
  DISPPARAMS given = {&slot.Get(), nullptr, 1, 0};
  EXPECT_EQ(Api()->Invoke(api.IdOf(L"ConvertStringFromHex"), IID_NULL, LOCALE_USER_DEFAULT,
                          DISPATCH_METHOD, &given, &slot.Get(), nullptr, nullptr),
            S_OK);
  EXPECT_STREQ(V_BSTR(&slot.Get()), L"abc");
  SysFreeString(text);
}

}  // namespace
}  // namespace latchkey::test
