// Byte arrays in late-bound calls: by value, by reference, and inside a variable by reference.
#include "tests/com/late_bound/late_client.h"

namespace latchkey::test {
namespace {

using ArrayArgumentsTest = LateClientTest;

TEST_F(ArrayArgumentsTest, AnArrayByValueIsReadAndUnchanged) {
  const UniqueSafeArray array(MakeByteArray(TextArray("abc")));
  EXPECT_EQ(api.Call(L"ByteArrayToString", {Value(array.Get())}).text, L"abc");
  EXPECT_EQ(ElementsOf(array.Get()), TextArray("abc"));
  EXPECT_EQ(array.Get()->cLocks, 0U);
}

TEST_F(ArrayArgumentsTest, APasswordByValueIsStoredAndTheCallersArrayIsItsOwn) {
  const UniqueSafeArray array(MakeByteArray(TextArray("abc")));
  for (const int kind : {DISPATCH_PROPERTYPUT, DISPATCH_PROPERTYPUTREF}) {
    EXPECT_EQ(api.Put(L"Password", Value(array.Get()), static_cast<WORD>(kind)).result, S_OK);
    EXPECT_EQ(ElementsOf(array.Get()), TextArray("abc"));
    EXPECT_EQ(api.Get(L"Password").bytes, TextArray("abc"));
  }
}

TEST_F(ArrayArgumentsTest, APasswordByReferenceErasesTheCallersArray) {
  SAFEARRAY* array = MakeByteArray(TextArray("abc"));
  EXPECT_EQ(api.Put(L"Password", ReferenceTo(array)).result, S_OK);
  EXPECT_EQ(array, nullptr);
  EXPECT_EQ(api.Get(L"Password").bytes, TextArray("abc"));
}

TEST_F(ArrayArgumentsTest, APasswordInAVariableByReferenceErasesTheVariablesArray) {
  VARIANT variable = Value(MakeByteArray(TextArray("abc")));
  EXPECT_EQ(api.Put(L"Password", ReferenceTo(variable)).result, S_OK);
  EXPECT_EQ(V_VT(&variable), VT_ARRAY | VT_UI1);
  EXPECT_EQ(V_ARRAY(&variable), nullptr);
  EXPECT_EQ(VariantClear(&variable), S_OK);
  EXPECT_EQ(api.Get(L"Password").bytes, TextArray("abc"));
}

TEST_F(ArrayArgumentsTest, APasswordReachesTheCallersArrayThroughTwoReferences) {
  SAFEARRAY* array = MakeByteArray(TextArray("abc"));
  VARIANT inner = ReferenceTo(array);
  VARIANT outer = ReferenceTo(inner);
  EXPECT_EQ(api.Put(L"Password", ReferenceTo(outer)).result, S_OK);
  EXPECT_EQ(array, nullptr);
}

TEST_F(ArrayArgumentsTest, AnArrayWithoutElementsIsNoPasswordInAnyShape) {
  ASSERT_EQ(api.Put(L"UseDefaultPWD", Value(false)).result, S_OK);
  UniqueSafeArray array(MakeByteArray({}));
  SAFEARRAY* raw = array.Get();
  VARIANT variable = Value(raw);
  for (const VARIANT& shape : {Value(raw), ReferenceTo(raw), ReferenceTo(variable)}) {
    EXPECT_EQ(api.Put(L"Password", shape).result, S_OK) << V_VT(&shape);
    EXPECT_EQ(api.Get(L"Password").bytes, Bytes{0});
  }
  EXPECT_EQ(raw, array.Get());
}

TEST_F(ArrayArgumentsTest, APasswordAboveElementZeroIsReadBackAndFailsInUse) {
  SAFEARRAY* array = MakeByteArray({1, 2, 3, 4}, 1);
  EXPECT_EQ(api.Put(L"Password", ReferenceTo(array)).result, S_OK);
  EXPECT_EQ(array, nullptr);
  EXPECT_EQ(api.Get(L"Password").bytes, (Bytes{1, 2, 3, 4}));
  EXPECT_EQ(api.Call(L"Encrypt", {Value(1), Value(1)}).number, VARIANT_FALSE);
  EXPECT_EQ(main.Get(L"ErrorLocationID").number, 438);
  EXPECT_EQ(main.Get(L"RTErrorNumber").number, 9);
}

TEST_F(ArrayArgumentsTest, ALockedArrayInAVariableIsZeroedAndStays) {
  ScopedVariant variable;
  variable.Get() = Value(MakeByteArray(TextArray("abc")));
  SAFEARRAY* const array = V_ARRAY(&variable.Get());
  ASSERT_EQ(SafeArrayLock(array), S_OK);
  EXPECT_EQ(api.Put(L"Password", ReferenceTo(variable.Get())).result, S_OK);
  EXPECT_EQ(V_ARRAY(&variable.Get()), array);
  EXPECT_EQ(ElementsOf(array), (Bytes{0, 0, 0, 0}));
  EXPECT_EQ(SafeArrayUnlock(array), S_OK);
}

TEST_F(ArrayArgumentsTest, AnEmptyVariableIsAnUnallocatedArray) {
  VARIANT empty = OfType(VT_EMPTY);
  const wchar_t* const description = L"Subscript out of range";
  ExpectException(api.Call(L"ByteArrayToString", {empty}), 9, description);
  ExpectException(api.Call(L"ByteArrayToString", {ReferenceTo(empty)}), 9, description);
  ExpectException(api.Put(L"InputData", ReferenceTo(empty)), 9, description);
  EXPECT_EQ(V_VT(&empty), VT_EMPTY);
}

TEST_F(ArrayArgumentsTest, ANullArrayIsAnUnallocatedArray) {
  SAFEARRAY* none = nullptr;
  VARIANT variable = Value(none);
  for (const VARIANT& shape : {Value(none), ReferenceTo(none), ReferenceTo(variable)}) {
    ExpectException(api.Call(L"ByteArrayToString", {shape}), 9, L"Subscript out of range");
  }
}

TEST_F(ArrayArgumentsTest, AnArrayOfOtherElementsIsATypeMismatch) {
  for (const VARTYPE type : {VT_VARIANT, VT_I4, VT_BSTR, VT_I1}) {
    ScopedVariant variable;
    variable.Get() = OfType(VT_ARRAY | type);
    V_ARRAY(&variable.Get()) = SafeArrayCreateVector(type, 0, 3);
    for (const VARIANT& shape : {variable.Get(), ReferenceTo(variable.Get())}) {
      ExpectException(api.Call(L"ByteArrayToString", {shape}), 13, L"Type mismatch");
      ExpectException(api.Put(L"Password", shape), 13, L"Type mismatch");
    }
  }
}

// The variant declares an array of bytes, but the array has other elements.
TEST_F(ArrayArgumentsTest, AnArrayWithAFalseTypeIsATypeMismatch) {
  const UniqueSafeArray strings(SafeArrayCreateVector(VT_BSTR, 0, 3));
  LONG index = 1;
  ASSERT_EQ(SafeArrayPutElement(strings.Get(), &index, Bstr(L"kept").Get()), S_OK);
  VARIANT variable = Value(strings.Get());
  ExpectException(api.Put(L"Password", Value(strings.Get())), 13, L"Type mismatch");
  ExpectException(api.Put(L"Password", ReferenceTo(variable)), 13, L"Type mismatch");
  BSTR kept = nullptr;
  ASSERT_EQ(SafeArrayGetElement(strings.Get(), &index, &kept), S_OK);
  EXPECT_EQ(Take(kept), L"kept");
}

TEST_F(ArrayArgumentsTest, OtherValuesThanArraysAreATypeMismatch) {
  const UniqueBstr text = Bstr(L"abc");
  VARIANT variable = Value(text.Get());
  for (const VARIANT& shape : {Value(text.Get()), ReferenceTo(variable), Value(1), OfType(VT_NULL),
                               OfType(VT_DISPATCH), OfType(VT_BYREF | VT_ARRAY | VT_UI1)}) {
    ExpectException(api.Call(L"ByteArrayToString", {shape}), 13, L"Type mismatch");
    ExpectException(api.Put(L"InputData", shape), 13, L"Type mismatch");
  }
}

TEST_F(ArrayArgumentsTest, RefusedShapesAreReportedAsFaults) {
  const UniqueSafeArray behindZero(MakeByteArray({1, 2, 3}, 1));
  SAFEARRAYBOUND bounds[] = {{3, 0}, {2, 0}};
  const UniqueSafeArray twoDimensions(SafeArrayCreate(VT_UI1, 2, bounds));
  for (SAFEARRAY* array : {behindZero.Get(), twoDimensions.Get()}) {
    for (const VARIANT& shape : {Value(array), ReferenceTo(array)}) {
      ExpectException(api.Call(L"ByteArrayToString", {shape}), 9, L"Subscript out of range");
    }
  }
}

TEST_F(ArrayArgumentsTest, ArraysAreReturnedAsArraysOfBytes) {
  const UniqueSafeArray input(MakeByteArray({0x04, 0x09, 0x0E, 0x13, 0}));
  const UniqueSafeArray password(MakeByteArray(TextArray("correct horse battery staple")));
  EXPECT_EQ(api.Get(L"OutputData").type, VT_ARRAY | VT_UI1);
  EXPECT_EQ(api.Get(L"OutputData").bytes, Bytes{});
  ASSERT_EQ(api.Put(L"Password", Value(password.Get())).result, S_OK);
  ASSERT_EQ(api.Put(L"InputData", Value(input.Get())).result, S_OK);
  ASSERT_EQ(api.Call(L"Encrypt", {Value(1), Value(1)}).number, VARIANT_TRUE);
  // Measured on a Windows CryptoAPI: base provider, MD5, RC4.
  EXPECT_EQ(api.Get(L"OutputData").bytes, (Bytes{0x1A, 0x95, 0x44, 0xBD, 0}));
}

}  // namespace
}  // namespace latchkey::test
