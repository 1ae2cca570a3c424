// An array of bytes with Automation's shape: perhaps unallocated, perhaps with another lower bound
// than 0, perhaps of several dimensions.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <span>

#include "base/export.h"
#include "base/wiped_buffer.h"

namespace latchkey {

// The operations expect zero-based arrays of one dimension; the other shapes exist so that the
// operation itself decides about what a client hands over, with the fault that belongs to it.
// The elements are wiped when the array is erased, overwritten or destroyed.
class LATCHKEY_API ByteArray {
 public:
  // An unallocated array: no elements and no bounds.
  ByteArray() noexcept = default;

  ByteArray(const ByteArray&) = default;
  ByteArray& operator=(const ByteArray&) = default;
  // The other array is left unallocated.
  ByteArray(ByteArray&& other) noexcept;
  ByteArray& operator=(ByteArray&& other) noexcept;
  ~ByteArray() = default;

  // A zero-based array of one dimension. Without elements it has the bounds 0 to -1.
  ByteArray(std::initializer_list<std::uint8_t> elements);
  explicit ByteArray(std::span<const std::uint8_t> elements);

  // The form in which text becomes an array: its codes and one zero element behind them, so with
  // bounds 0 to the number of codes. Empty text gives a single zero.
  static ByteArray WithTrailingZero(std::span<const std::uint8_t> codes);

  // The same made of the first `length` of the bytes, which have room for one more, in their own
  // storage.
  static ByteArray WithTrailingZero(InlineBytes&& bytes, std::size_t length);

  // An array of any shape: `elements` in memory order, `lowerBound` and `upperBound` those of the
  // first dimension. Raises SubscriptOutOfRange where an array of one dimension has another number
  // of elements than its bounds say.
  static ByteArray WithShape(std::uint16_t dimensions, std::int32_t lowerBound,
                             std::int32_t upperBound, std::span<const std::uint8_t> elements);

  // 0 when unallocated.
  [[nodiscard]] std::uint16_t Dimensions() const noexcept { return dimensions_; }
  [[nodiscard]] std::int32_t LowerBound() const noexcept { return lowerBound_; }

  // The upper bound, whatever the lower bound is; one below the lower bound without elements.
  // Raises SubscriptOutOfRange for an unallocated array and for one of several dimensions.
  [[nodiscard]] std::int32_t UpperBound() const;

  // All elements in memory order; empty when unallocated.
  [[nodiscard]] std::span<const std::uint8_t> Elements() const noexcept { return elements_.All(); }

  // Elements 0 to UpperBound() - 1: the part that carries text. Raises what UpperBound raises, and
  // SubscriptOutOfRange where the bounds leave out 0.
  [[nodiscard]] std::span<const std::uint8_t> TextElements() const;

  // Wipes the elements and leaves the array unallocated.
  void Erase() noexcept;

  // Does the same, but gives the storage to the caller, for new bytes.
  [[nodiscard]] InlineBytes TakeStorage() noexcept;

  friend bool operator==(const ByteArray&, const ByteArray&) = default;

 private:
  // Assigned first: where there is no memory for the elements, the bounds stay those of the old
  // ones.
  InlineBytes elements_;
  std::uint16_t dimensions_ = 0;
  std::int32_t lowerBound_ = 0;
  std::int32_t upperBound_ = -1;
};

}  // namespace latchkey
