// Byte arrays on their way in from clients and out to them.
#pragma once

#include <cstdint>
#include <span>

#include "com/windows/automation_prelude.h"
#include "latchkey/byte_array.h"

namespace latchkey::com {

// Access to the elements of a client's array, which is locked in the meantime so that nothing can
// resize or free it. Raises InvalidProcedureCall when the array cannot be locked.
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

// Raises TypeMismatch when an array's elements are not bytes. A null array has none.
void RequireBytes(SAFEARRAY* array);

// A copy of a client's array with its shape, also without elements; unallocated for a null array
// and for one without dimensions or storage. Raises TypeMismatch as RequireBytes does, Overflow
// when the upper bound of an array with elements does not fit 32 bits, bad_alloc.
[[nodiscard]] ByteArray FromSafeArray(SAFEARRAY* array);

// An array for a client, who destroys it; null for an unallocated one. Raises bad_alloc.
[[nodiscard]] SAFEARRAY* ToSafeArray(const ByteArray& array);

// Zeroes the elements of an array of bytes; any other, a null and an unreadable array are left
// alone.
void WipeSafeArray(SAFEARRAY* array) noexcept;

// Erases a client's array as Visual Basic's Erase does, wiping it first: a dynamic array is freed
// and `array` becomes null; one of fixed size, and one that somebody has locked, stays allocated
// with all elements zero.
void EraseSafeArray(SAFEARRAY*& array) noexcept;

}  // namespace latchkey::com
