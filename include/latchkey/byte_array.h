// An array of bytes as in Automation: it may be unallocated, have a lower bound other than 0, or
// have several dimensions.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <memory>
#include <span>

#include "latchkey/export.h"

namespace latchkey {

class ShapedBytes;

// The operations expect zero-based arrays of one dimension. Other shapes exist so that the
// operation itself can refuse a client's array with the right fault. The elements are wiped when
// the array is erased, overwritten or destroyed. Making or copying an array raises std::bad_alloc
// if memory runs out, and Overflow for 2^31 elements or more. Use an array on one thread at a time.
class LATCHKEY_API ByteArray {
 public:
  // An unallocated array: no elements and no bounds.
  ByteArray() noexcept;

  // If the copy fails, the target of an assignment stays unchanged.
  ByteArray(const ByteArray& other);
  ByteArray& operator=(const ByteArray& other);
  // Leaves `other` unallocated.
  ByteArray(ByteArray&& other) noexcept;
  ByteArray& operator=(ByteArray&& other) noexcept;
  ~ByteArray();

  // A zero-based array of one dimension. Without elements it has the bounds 0 to -1.
  ByteArray(std::initializer_list<std::uint8_t> elements);
  explicit ByteArray(std::span<const std::uint8_t> elements);

  // The array for a text: its codes followed by one zero element, so the bounds are 0 to the number
  // of codes. Empty text gives a single zero.
  static ByteArray WithTrailingZero(std::span<const std::uint8_t> codes);

  // An array of any shape: `elements` in memory order, `lowerBound` and `upperBound` those of the
  // first dimension; unallocated for 0 dimensions. Raises SubscriptOutOfRange if the number of
  // elements of an array of one dimension does not match its bounds.
  static ByteArray WithShape(std::uint16_t dimensions, std::int32_t lowerBound,
                             std::int32_t upperBound, std::span<const std::uint8_t> elements);

  // 0 when unallocated.
  [[nodiscard]] std::uint16_t Dimensions() const noexcept;
  [[nodiscard]] std::int32_t LowerBound() const noexcept;

  // The upper bound; for an array without elements, the lower bound minus one. Raises
  // SubscriptOutOfRange for an unallocated array and for one of several dimensions.
  [[nodiscard]] std::int32_t UpperBound() const;

  // All elements in memory order; empty when unallocated.
  [[nodiscard]] std::span<const std::uint8_t> Elements() const noexcept;

  // Elements 0 to UpperBound() - 1: the part that holds text. Raises the faults of UpperBound, and
  // SubscriptOutOfRange if the bounds do not include 0.
  [[nodiscard]] std::span<const std::uint8_t> TextElements() const;

  // Wipes the elements and leaves the array unallocated.
  void Erase() noexcept;

  // Whether shape and elements are equal.
  [[nodiscard]] bool operator==(const ByteArray& other) const noexcept;

 private:
  friend class ShapedBytes;

  std::unique_ptr<ShapedBytes> state_;  // null for an unallocated array
};

}  // namespace latchkey
