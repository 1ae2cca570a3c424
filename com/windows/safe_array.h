// Conversions of byte arrays from and to clients.
#pragma once

#include <cstdint>
#include <span>

#include "com/windows/automation_prelude.h"
#include "latchkey/byte_array.h"

namespace latchkey::com {

// Access to the elements of a client's array, which stays locked meanwhile, so that it cannot be
// resized or freed. Raises InvalidProcedureCall if the array cannot be locked.
class SafeArrayAccess {
 public:
  explicit SafeArrayAccess(SAFEARRAY* array);
  SafeArrayAccess(const SafeArrayAccess&) = delete;
  SafeArrayAccess& operator=(const SafeArrayAccess&) = delete;
  ~SafeArrayAccess();

  // The bytes of all elements in memory order.
  [[nodiscard]] std::span<std::uint8_t> Bytes() const noexcept { return bytes_; }

 private:
  SAFEARRAY* array_;
  std::span<std::uint8_t> bytes_;
};

// Raises TypeMismatch if an array's elements are not bytes. A null array has no elements.
void RequireBytes(SAFEARRAY* array);

// A copy of a client's array with its shape, also without elements; unallocated for a null array
// and for one without dimensions or storage. Raises TypeMismatch as RequireBytes does, Overflow
// when the upper bound of an array with elements does not fit 32 bits, bad_alloc.
[[nodiscard]] ByteArray FromSafeArray(SAFEARRAY* array);

// An array for a client, who destroys it; null for an unallocated one. Raises bad_alloc.
[[nodiscard]] SAFEARRAY* ToSafeArray(const ByteArray& array);

// Zeroes the elements of an array of bytes. Leaves other, null and unreadable arrays unchanged.
void WipeSafeArray(SAFEARRAY* array) noexcept;

// Erases a client's array as Visual Basic's Erase does, wiping it first: a dynamic array is freed
// and `array` becomes null; one of fixed size or with a lock stays allocated with all elements
// zero.
void EraseSafeArray(SAFEARRAY*& array) noexcept;

}  // namespace latchkey::com
