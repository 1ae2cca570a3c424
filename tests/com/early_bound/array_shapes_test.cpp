// Arrays of every shape and ownership that a client may pass.
#include <array>
#include <cstring>
#include <limits>

#include "tests/com/com_client.h"

namespace latchkey::test {
namespace {

class ArrayShapesTest : public ClientTest {
 protected:
  // The common result of all members that read an array as text.
  HRESULT GiveToReaders(SAFEARRAY* array) {
    BSTR text = nullptr;
    const HRESULT converted = Api()->ByteArrayToString(&array, &text);
    SysFreeString(text);
    EXPECT_EQ(Api()->put_InputData(&array), converted);
    return converted;
  }

  // The common result of all members that take an array.
  HRESULT GiveToAll(SAFEARRAY* array) {
    const HRESULT converted = GiveToReaders(array);
    SAFEARRAY* password = array;
    EXPECT_EQ(Api()->put_Password(&password), converted);
    EXPECT_TRUE(SUCCEEDED(converted) || password == array);
    return converted;
  }

  HRESULT PutPassword(SAFEARRAY*& array) { return Api()->put_Password(&array); }

  void StorePassword(const Bytes& bytes) {
    SAFEARRAY* array = MakeByteArray(bytes);
    EXPECT_EQ(PutPassword(array), S_OK);
    EXPECT_EQ(array, nullptr);
  }

  void ExpectFaultAt(short location) {
    const ErrorRecord record = ReadRecord(Main());
    EXPECT_EQ(record.location, location);
    EXPECT_EQ(record.runTimeNumber, 9);
  }
};

// An array whose descriptor and elements belong to its owner, as for a fixed-size array.
struct FixedArray {
  explicit FixedArray(int features) {
    descriptor.cDims = 1;
    descriptor.fFeatures = static_cast<USHORT>(features);
    descriptor.cbElements = 1;
    descriptor.pvData = elements.data();
    descriptor.rgsabound[0] = {static_cast<ULONG>(elements.size()), 0};
  }
  std::array<std::uint8_t, 4> elements = {'a', 'b', 'c', 0};
  SAFEARRAY descriptor = {};
};

TEST_F(ArrayShapesTest, ANullArrayIsSubscriptOutOfRange) {
  ExpectFault(GiveToAll(nullptr), 9, L"Subscript out of range");
}

TEST_F(ArrayShapesTest, AnArrayWithoutAnElementZeroHasNoText) {
  for (const auto& [elements, lowerBound] :
       {std::pair{Bytes{}, 0}, {Bytes{1, 2, 3}, 1}, {Bytes{1, 2, 3}, -3}}) {
    SCOPED_TRACE(lowerBound);
    const UniqueSafeArray array(MakeByteArray(elements, lowerBound));
    ExpectFault(GiveToReaders(array.Get()), 9, L"Subscript out of range");
  }
}

// The first array is that of .NET's new byte[0].
TEST_F(ArrayShapesTest, AnUpperBoundBelowOneIsNoPasswordAndStaysWithTheCaller) {
  UseDefaultPassword(false);
  const Bytes four = {1, 2, 3, 4};
  for (const auto& [elements, lowerBound] :
       {std::pair{Bytes{}, 0}, {Bytes{}, 1}, {four, -4}, {four, -3}}) {
    StorePassword(TextArray("abc"));
    const UniqueSafeArray array(MakeByteArray(elements, lowerBound));
    SAFEARRAY* raw = array.Get();
    EXPECT_EQ(PutPassword(raw), S_OK) << lowerBound;
    EXPECT_EQ(raw, array.Get());
    EXPECT_EQ(ElementsOf(raw), elements);
    EXPECT_EQ(StoredPassword(), Bytes{0});
  }
  UseDefaultPassword(true);
  const UniqueSafeArray array(MakeByteArray({}));
  SAFEARRAY* raw = array.Get();
  EXPECT_EQ(PutPassword(raw), S_OK);
  EXPECT_GE(StoredPassword().size(), 2U);
}

TEST_F(ArrayShapesTest, APasswordAboveElementZeroIsReadBackWithItsBoundsAndFailsInUse) {
  SAFEARRAY* password = MakeByteArray({1, 2, 3, 4}, 1);
  EXPECT_EQ(PutPassword(password), S_OK);
  EXPECT_EQ(password, nullptr);
  SAFEARRAY* stored = nullptr;
  ASSERT_EQ(Api()->get_Password(&stored), S_OK);
  LONG lower = 0;
  LONG upper = 0;
  EXPECT_EQ(SafeArrayGetLBound(stored, 1, &lower), S_OK);
  EXPECT_EQ(SafeArrayGetUBound(stored, 1, &upper), S_OK);
  EXPECT_EQ(lower, 1);
  EXPECT_EQ(upper, 4);
  EXPECT_EQ(Take(stored), (Bytes{1, 2, 3, 4}));

  EXPECT_EQ(Encrypt(1, 1), VARIANT_FALSE);
  ExpectFaultAt(438);
  EXPECT_EQ(Decrypt(1, 1), VARIANT_FALSE);
  ExpectFaultAt(436);
  const UniqueBstr text = Bstr(L"abc");
  BSTR hash = nullptr;
  EXPECT_EQ(Api()->CreateHash(text.Get(), 1, VARIANT_TRUE, VARIANT_TRUE, VARIANT_FALSE, &hash),
            S_OK);
  EXPECT_EQ(Take(hash), L"");
  ExpectFaultAt(432);
}

TEST_F(ArrayShapesTest, AnArrayOfTwoDimensionsIsSubscriptOutOfRange) {
  std::array<SAFEARRAYBOUND, 2> bounds = {{{3, 0}, {2, 0}}};
  const UniqueSafeArray array(SafeArrayCreate(VT_UI1, 2, bounds.data()));
  ExpectFault(GiveToAll(array.Get()), 9, L"Subscript out of range");
}

TEST_F(ArrayShapesTest, AnArrayOfOtherElementsIsATypeMismatch) {
  for (const VARTYPE type :
       {VT_I1, VT_BOOL, VT_I2, VT_I4, VT_R8, VT_BSTR, VT_VARIANT, VT_UNKNOWN}) {
    const UniqueSafeArray array(SafeArrayCreateVector(type, 0, 4));
    ExpectFault(GiveToAll(array.Get()), 13, L"Type mismatch");
  }
}

TEST_F(ArrayShapesTest, ReadingStartsAtElementZeroWithAnyLowerBound) {
  const UniqueSafeArray array(MakeByteArray({'x', 'y', 'a', 'b', 0}, -2));
  SAFEARRAY* raw = array.Get();
  BSTR text = nullptr;
  ASSERT_EQ(Api()->ByteArrayToString(&raw, &text), S_OK);
  EXPECT_EQ(Take(text), L"ab");
}

TEST_F(ArrayShapesTest, AnArrayWithoutRecordedElementTypeIsReadByItsElementSize) {
  FixedArray bytes(0);
  EXPECT_EQ(GiveToAll(&bytes.descriptor), S_OK);
  FixedArray words(0);
  words.descriptor.cbElements = 2;
  words.descriptor.rgsabound[0].cElements = 2;
  ExpectFault(GiveToAll(&words.descriptor), 13, L"Type mismatch");
}

TEST_F(ArrayShapesTest, AnArrayWhoseBoundsPassTheLastSubscriptIsRefused) {
  FixedArray array(0);
  array.descriptor.rgsabound[0].lLbound = 0x7FFFFFFF;
  ExpectFault(GiveToAll(&array.descriptor), 6, L"Overflow");
}

// Its upper bound does not fit 32 bits.
TEST_F(ArrayShapesTest, AnEmptyArrayFromTheLowestSubscriptIsNoPassword) {
  StorePassword(TextArray("abc"));
  UseDefaultPassword(false);
  const UniqueSafeArray array(MakeByteArray({}, std::numeric_limits<LONG>::min()));
  SAFEARRAY* raw = array.Get();
  EXPECT_EQ(PutPassword(raw), S_OK);
  EXPECT_EQ(StoredPassword(), Bytes{0});
  ExpectFault(GiveToReaders(array.Get()), 9, L"Subscript out of range");
}

class RefusedPasswordTest : public ArrayShapesTest {
 protected:
  // The stored password after another was refused.
  Bytes StoredAfter(SAFEARRAY* refused, std::int32_t number, const wchar_t* description) {
    StorePassword(TextArray("abc"));
    ExpectFault(PutPassword(refused), number, description);
    return StoredPassword();
  }
};

TEST_F(RefusedPasswordTest, OneOfOtherElementsKeepsTheEarlierPassword) {
  const UniqueSafeArray array(SafeArrayCreateVector(VT_I2, 0, 4));
  EXPECT_EQ(StoredAfter(array.Get(), 13, L"Type mismatch"), TextArray("abc"));
}

TEST_F(RefusedPasswordTest, OneWithoutMemoryDiscardsTheEarlierPassword) {
  struct {
    SAFEARRAY first = {};
    std::array<SAFEARRAYBOUND, 2> others = {};
  } array;
  FixedArray memory(0);
  array.first = memory.descriptor;
  array.first.cDims = 3;
  array.first.rgsabound[0] = {0x7FFFFFFF, 0};
  array.others = {{{0x7FFFFFFF, 0}, {0x7FFFFFFF, 0}}};  // more bytes than any address
  EXPECT_EQ(StoredAfter(&array.first, 7, L"Out of memory"), Bytes{0});
}

TEST_F(RefusedPasswordTest, OneBeyondTheLastSubscriptDiscardsTheEarlierPassword) {
  FixedArray array(0);
  array.descriptor.rgsabound[0].lLbound = 0x7FFFFFFF;
  EXPECT_EQ(StoredAfter(&array.descriptor, 6, L"Overflow"), Bytes{0});
}

TEST_F(ArrayShapesTest, AnArrayWithoutStorageOrDimensionsIsSubscriptOutOfRange) {
  FixedArray array(0);
  array.descriptor.pvData = nullptr;
  ExpectFault(GiveToAll(&array.descriptor), 9, L"Subscript out of range");
  FixedArray flat(0);
  flat.descriptor.cDims = 0;
  ExpectFault(GiveToAll(&flat.descriptor), 9, L"Subscript out of range");
}

TEST_F(ArrayShapesTest, ALockedArrayIsReadAndKeepsItsLocks) {
  const UniqueSafeArray array(MakeByteArray(TextArray("abc")));
  ASSERT_EQ(SafeArrayLock(array.Get()), S_OK);
  SAFEARRAY* raw = array.Get();
  EXPECT_EQ(Api()->put_InputData(&raw), S_OK);
  EXPECT_EQ(array.Get()->cLocks, 1U);
  EXPECT_EQ(SafeArrayUnlock(array.Get()), S_OK);
}

TEST_F(ArrayShapesTest, ReadingDoesNotChangeTheCallersArray) {
  const UniqueSafeArray array(MakeByteArray(TextArray("abc")));
  SAFEARRAY* raw = array.Get();
  EXPECT_EQ(Api()->put_InputData(&raw), S_OK);
  EXPECT_EQ(raw, array.Get());
  EXPECT_EQ(array.Get()->cLocks, 0U);
  EXPECT_EQ(ElementsOf(raw), TextArray("abc"));
}

TEST_F(ArrayShapesTest, APasswordErasesADynamicArray) {
  StorePassword(TextArray("abc"));
  EXPECT_EQ(StoredPassword(), TextArray("abc"));
}

TEST_F(ArrayShapesTest, AnArrayTooShortForAPasswordStaysWithTheCaller) {
  UniqueSafeArray array(MakeByteArray({'x'}));
  SAFEARRAY* raw = array.Get();
  EXPECT_EQ(PutPassword(raw), S_OK);
  EXPECT_EQ(raw, array.Get());
  EXPECT_EQ(ElementsOf(raw), Bytes{'x'});
}

TEST_F(ArrayShapesTest, APasswordZeroesAnArrayOfFixedSizeAndLeavesItAllocated) {
  for (const int feature : {FADF_AUTO, FADF_STATIC, FADF_EMBEDDED, FADF_FIXEDSIZE}) {
    FixedArray array(feature);
    SAFEARRAY* raw = &array.descriptor;
    EXPECT_EQ(PutPassword(raw), S_OK);
    EXPECT_EQ(raw, &array.descriptor);
    EXPECT_EQ(array.elements, (std::array<std::uint8_t, 4>{})) << feature;
    EXPECT_EQ(raw->rgsabound[0].cElements, 4U);
    EXPECT_EQ(StoredPassword(), TextArray("abc"));
  }
}

TEST_F(ArrayShapesTest, APasswordZeroesALockedArrayAndLeavesItAllocated) {
  const UniqueSafeArray array(MakeByteArray(TextArray("abc")));
  ASSERT_EQ(SafeArrayLock(array.Get()), S_OK);
  SAFEARRAY* raw = array.Get();
  EXPECT_EQ(PutPassword(raw), S_OK);
  ASSERT_EQ(raw, array.Get());
  EXPECT_EQ(ElementsOf(raw), (Bytes{0, 0, 0, 0}));
  EXPECT_EQ(SafeArrayUnlock(array.Get()), S_OK);
}

TEST_F(ArrayShapesTest, ResultsAreDynamicArraysThatAClientMayResize) {
  VARIANT value = Value(12);
  SAFEARRAY* array = nullptr;
  ASSERT_EQ(Api()->StringToByteArray(&value, &array), S_OK);
  const UniqueSafeArray owner(array);
  VARTYPE type = VT_EMPTY;
  EXPECT_EQ(SafeArrayGetVartype(array, &type), S_OK);
  EXPECT_EQ(type, VT_UI1);
  SAFEARRAYBOUND larger = {10, 0};
  EXPECT_EQ(SafeArrayRedim(array, &larger), S_OK);
}

TEST_F(ArrayShapesTest, ALargeArrayIsReadCompletely) {
  constexpr std::size_t kSize = 5'000'000;
  const UniqueSafeArray array(MakeByteArray(Bytes(kSize + 1, 'x')));
  SAFEARRAY* raw = array.Get();
  BSTR text = nullptr;
  ASSERT_EQ(Api()->ByteArrayToString(&raw, &text), S_OK);
  EXPECT_EQ(Take(text).size(), kSize);
}

}  // namespace
}  // namespace latchkey::test
