#include "com/windows/safe_array.h"

#include <algorithm>
#include <cstddef>
#include <limits>
#include <new>

#include "base/checked_arithmetic.h"
#include "base/secure_memory.h"
#include "latchkey/fault.h"

namespace latchkey::com {
namespace {

// Arrays whose memory is fixed: on the stack, in a structure, or declared with bounds.
constexpr USHORT kFixedArray = FADF_AUTO | FADF_STATIC | FADF_EMBEDDED | FADF_FIXEDSIZE;
constexpr LONG kLowestBound = std::numeric_limits<LONG>::min();
// Arrays whose elements own memory, by the flags that apply without a recorded element type.
constexpr USHORT kOwningElements = FADF_BSTR | FADF_UNKNOWN | FADF_DISPATCH | FADF_VARIANT;

// The descriptor has its dimensions last to first.
const SAFEARRAYBOUND& FirstDimension(const SAFEARRAY& array) {
  return array.rgsabound[array.cDims - 1];
}

// 0 if any dimension is empty. Raises bad_alloc for more than memory can hold.
std::size_t ByteCount(const SAFEARRAY& array) {
  if (array.cDims == 0 || array.pvData == nullptr) return 0;
  std::size_t count = array.cbElements;
  for (USHORT i = 0; i < array.cDims; ++i) {
    const std::size_t elements = array.rgsabound[i].cElements;
    if (elements == 0) return 0;
    if (count > std::numeric_limits<std::size_t>::max() / elements) throw std::bad_alloc();
    count *= elements;
  }
  return count;
}

bool HoldsBytes(SAFEARRAY& array) {
  if ((array.fFeatures & FADF_HAVEVARTYPE) == 0) {
    return array.cbElements == 1 && (array.fFeatures & (kOwningElements | FADF_RECORD)) == 0;
  }
  VARTYPE type = VT_EMPTY;
  return SUCCEEDED(SafeArrayGetVartype(&array, &type)) && type == VT_UI1 && array.cbElements == 1;
}

}  // namespace

SafeArrayAccess::SafeArrayAccess(SAFEARRAY* array) : array_(array) {
  const std::size_t count = ByteCount(*array);
  void* data = nullptr;
  if (FAILED(SafeArrayAccessData(array, &data))) throw Fault(FaultNumber::InvalidProcedureCall);
  bytes_ = {static_cast<std::uint8_t*>(data), count};
}

SafeArrayAccess::~SafeArrayAccess() { SafeArrayUnaccessData(array_); }

void RequireBytes(SAFEARRAY* array) {
  if (array != nullptr && !HoldsBytes(*array)) throw Fault(FaultNumber::TypeMismatch);
}

ByteArray FromSafeArray(SAFEARRAY* array) {
  if (array == nullptr) return {};
  RequireBytes(array);
  // An array that claims elements but has no storage is unallocated.
  const bool anyElement = ByteCount(*array) != 0;
  if (array->cDims == 0 || (!anyElement && FirstDimension(*array).cElements != 0)) return {};
  SAFEARRAYBOUND bound = FirstDimension(*array);
  // An empty array's upper bound is one below its lower bound, and must fit too.
  if (bound.cElements == 0) bound.lLbound = std::max(bound.lLbound, kLowestBound + 1);
  const auto upperBound =
      NarrowTo<std::int32_t>(std::int64_t{bound.lLbound} + std::int64_t{bound.cElements} - 1);
  if (!anyElement) return ByteArray::WithShape(array->cDims, bound.lLbound, upperBound, {});
  const SafeArrayAccess access(array);
  return ByteArray::WithShape(array->cDims, bound.lLbound, upperBound, access.Bytes());
}

SAFEARRAY* ToSafeArray(const ByteArray& array) {
  if (array.Dimensions() == 0) return nullptr;
  const auto elements = array.Elements();
  SAFEARRAYBOUND bound = {static_cast<ULONG>(elements.size()), array.LowerBound()};
  SAFEARRAY* const copy = SafeArrayCreate(VT_UI1, 1, &bound);
  if (copy == nullptr) throw std::bad_alloc();
  if (!elements.empty()) CopyMemory(copy->pvData, elements.data(), elements.size());
  return copy;
}

void WipeSafeArray(SAFEARRAY* array) noexcept {
  if (array == nullptr || !HoldsBytes(*array)) return;
  try {
    const auto bytes = SafeArrayAccess(array).Bytes();
    SecureWipe(bytes.data(), bytes.size());
  } catch (...) {  // NOLINT(bugprone-empty-catch): an unreadable array cannot be wiped
  }
}

void EraseSafeArray(SAFEARRAY*& array) noexcept {
  WipeSafeArray(array);
  if (array == nullptr || (array->fFeatures & kFixedArray) != 0) return;
  if (SUCCEEDED(SafeArrayDestroy(array))) array = nullptr;
}

}  // namespace latchkey::com
