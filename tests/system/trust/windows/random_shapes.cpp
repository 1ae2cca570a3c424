#include "tests/system/trust/windows/random_shapes.h"

#include <array>

namespace latchkey::test {
namespace {

constexpr std::array<VARTYPE, 16> kScalars{VT_EMPTY, VT_NULL, VT_I2,   VT_I4, VT_R4,  VT_R8,
                                           VT_CY,    VT_DATE, VT_BOOL, VT_I1, VT_UI1, VT_UI2,
                                           VT_UI4,   VT_I8,   VT_UI8,  VT_INT};
constexpr std::array<VARTYPE, 8> kElements{VT_UI1, VT_UI1, VT_UI1,  VT_I1,
                                           VT_I2,  VT_R8,  VT_BSTR, VT_VARIANT};

ArrayKind KindOf(const SAFEARRAY* array) {
  if (array == nullptr) return ArrayKind::WrongShape;
  if (array->cDims != 1) return ArrayKind::WrongShape;
  const LONG lowest = array->rgsabound[0].lLbound;
  const LONG highest = lowest + static_cast<LONG>(array->rgsabound[0].cElements) - 1;
  return lowest <= 0 && highest >= 0 ? ArrayKind::Readable : ArrayKind::NoElementZero;
}

}  // namespace

STDMETHODIMP CountedObject::QueryInterface(REFIID interfaceId, void** object) {
  const bool known =
      IsEqualIID(interfaceId, IID_IUnknown) || IsEqualIID(interfaceId, IID_IDispatch);
  *object = known ? this : nullptr;
  if (known) AddRef();
  return known ? S_OK : E_NOINTERFACE;
}

STDMETHODIMP CountedObject::GetTypeInfoCount(UINT* count) {
  *count = 0;
  return S_OK;
}

ShapeMaker::~ShapeMaker() {
  for (const OwnedArray& owned : arrays_) {
    if (owned.array == nullptr) continue;
    for (ULONG i = 0; i < owned.locks; ++i) SafeArrayUnlock(owned.array);
    SafeArrayDestroy(owned.array);
  }
  for (BSTR text : texts_) SysFreeString(text);
}

bool ShapeMaker::LocksAreAsMade() const {
  for (const OwnedArray& owned : arrays_) {
    if (owned.array != nullptr && owned.array->cLocks != owned.locks) return false;
  }
  return true;
}

Shape ShapeMaker::Make() {
  switch (random_.Below(10)) {
    case 0:
    case 1:
      return ThroughReferences(MakeText());
    case 2:
    case 3:
    case 4:
      return ThroughReferences(MakeArray());
    case 5:
      return MakeUnreadable();
    default:
      return ThroughReferences(MakeScalar());
  }
}

Shape ShapeMaker::MakeScalar() {
  Shape shape;
  if (random_.OneIn(12)) {
    shape.value = LeftOut();
    shape.leftOut = true;
  } else if (random_.OneIn(12)) {
    shape.value = OfType(random_.Flag() ? VT_DISPATCH : VT_UNKNOWN);
    if (!random_.OneIn(3)) V_DISPATCH(&shape.value) = &object_;
  } else {
    shape.value = OfType(random_.Of(std::span(kScalars)));
    // Small numbers, numbers around the limits of each width, and any bits.
    const auto small = static_cast<LONGLONG>(random_.Below(8)) - 1;
    const auto wide = (LONGLONG{1} << random_.Below(63)) - static_cast<LONGLONG>(random_.Below(2));
    if (V_VT(&shape.value) == VT_R8) {
      V_R8(&shape.value) = static_cast<double>(random_.Flag() ? small : wide);
    } else if (V_VT(&shape.value) == VT_R4) {
      V_R4(&shape.value) = static_cast<float>(random_.Flag() ? small : wide);
    } else if (V_VT(&shape.value) == VT_DATE) {
      V_DATE(&shape.value) = static_cast<double>(small * 1000);
    } else if (V_VT(&shape.value) != VT_EMPTY && V_VT(&shape.value) != VT_NULL) {
      V_I8(&shape.value) = random_.Flag() ? small : wide;
    }
  }
  shape.plain = shape.value;
  return shape;
}

Shape ShapeMaker::MakeText() {
  constexpr std::array<const wchar_t*, 9> kTexts{L"",     L"1",     L"5",    L"True",        L"abc",
                                                 L"6162", L"70000", L"1e99", L"\x20AC\x0100"};
  Shape shape;
  BSTR text = random_.OneIn(9) ? nullptr : SysAllocString(random_.Of(std::span(kTexts)));
  texts_.push_back(text);
  shape.value = Value(text);
  shape.plain = shape.value;
  return shape;
}

SAFEARRAY* ShapeMaker::NewArray(VARTYPE type) {
  SAFEARRAYBOUND bounds[3];
  const auto dimensions = static_cast<UINT>(random_.OneIn(4) ? 1 + random_.Below(3) : 1);
  for (auto& bound : bounds) {
    bound = {static_cast<ULONG>(random_.Below(40)),
             random_.OneIn(3) ? static_cast<LONG>(random_.Between(-9, 9)) : 0};
  }
  SAFEARRAY* const array = SafeArrayCreate(type, dimensions, bounds);
  ULONG locks = 0;
  if (array != nullptr && random_.OneIn(10)) locks = SUCCEEDED(SafeArrayLock(array)) ? 1 : 0;
  arrays_.push_back({array, locks});
  return array;
}

// Sometimes declared with another element type.
Shape ShapeMaker::MakeArray() {
  Shape shape;
  const VARTYPE type = random_.Of(std::span(kElements));
  SAFEARRAY* const array = random_.OneIn(12) ? nullptr : NewArray(type);
  const VARTYPE name = random_.OneIn(8) ? VARTYPE{VT_UI1} : type;
  const bool bytes = array == nullptr || type == VT_UI1;
  if (array == nullptr) arrays_.push_back({nullptr, 0});
  if (name == VT_UI1) shape.array = bytes ? KindOf(array) : ArrayKind::NoBytes;
  shape.value = OfType(VT_ARRAY | name);
  V_ARRAY(&shape.value) = array;
  shape.plain = shape.value;
  if (random_.Flag()) {
    shape.value = OfType(VT_BYREF | VT_ARRAY | name);
    V_ARRAYREF(&shape.value) = &arrays_.back().array;
  }
  return shape;
}

// A null reference, a circular one, or a type that does not exist.
Shape ShapeMaker::MakeUnreadable() {
  Shape shape;
  shape.readable = false;
  switch (random_.Below(3)) {
    case 0:
      shape.value = OfType(VT_BYREF | static_cast<int>(random_.Of(std::span(kScalars))));
      if (V_VT(&shape.value) == VT_BYREF) shape.value = OfType(VT_BYREF | VT_VARIANT);
      break;
    case 1:
      variables_.emplace_back();
      variables_.back() = ReferenceTo(variables_.back());
      shape.value = variables_.back();
      break;
    default:
      shape.value = OfType(0x0F00 + static_cast<int>(random_.Below(0x100)));
      break;
  }
  return shape;
}

// A plain value is passed by value, as a reference to its own type, or through one or two
// variables.
Shape ShapeMaker::ThroughReferences(Shape shape) {
  const VARTYPE type = V_VT(&shape.value);
  const bool mayBeReferred = type != VT_EMPTY && type != VT_NULL && (type & VT_BYREF) == 0 &&
                             (type & VT_ARRAY) == 0 && !shape.leftOut;
  if (mayBeReferred && random_.OneIn(4)) {
    variables_.push_back(shape.value);
    shape.value = OfType(VT_BYREF | type);
    V_BYREF(&shape.value) = &V_UI1(&variables_.back());
  }
  for (auto depth = random_.OneIn(3) ? 1 + random_.Below(2) : 0; depth > 0; --depth) {
    variables_.push_back(shape.value);
    shape.value = ReferenceTo(variables_.back());
  }
  return shape;
}

}  // namespace latchkey::test
