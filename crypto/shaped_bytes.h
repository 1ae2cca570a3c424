// The contents of a byte array, without allocation for few elements.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <span>

#include "base/wiped_buffer.h"
#include "latchkey/byte_array.h"

namespace latchkey {

// Bytes with the shape of an Automation array. Members that ByteArray has too behave as there, but
// allocate only for the elements.
class ShapedBytes {
 public:
  // Unallocated.
  ShapedBytes() noexcept = default;

  ShapedBytes(const ShapedBytes&) = default;
  ShapedBytes& operator=(const ShapedBytes&) = default;
  // Leaves `other` unallocated.
  ShapedBytes(ShapedBytes&& other) noexcept;
  ShapedBytes& operator=(ShapedBytes&& other) noexcept;
  ~ShapedBytes() = default;

  ShapedBytes(std::initializer_list<std::uint8_t> elements);
  explicit ShapedBytes(std::span<const std::uint8_t> elements);

  static ShapedBytes WithTrailingZero(std::span<const std::uint8_t> codes);

  // The same for the first `length` of the bytes, in their own storage. That must have room for one
  // more byte.
  static ShapedBytes WithTrailingZero(InlineBytes&& bytes, std::size_t length);

  static ShapedBytes WithShape(std::uint16_t dimensions, std::int32_t lowerBound,
                               std::int32_t upperBound, std::span<const std::uint8_t> elements);

  [[nodiscard]] std::uint16_t Dimensions() const noexcept { return dimensions_; }
  [[nodiscard]] std::int32_t LowerBound() const noexcept { return lowerBound_; }
  [[nodiscard]] std::int32_t UpperBound() const;
  [[nodiscard]] std::span<const std::uint8_t> Elements() const noexcept { return elements_.All(); }
  [[nodiscard]] std::span<const std::uint8_t> TextElements() const;

  // Leaves the array unallocated and returns its storage, for new bytes.
  [[nodiscard]] InlineBytes TakeStorage() noexcept;

  // The array for a client. An unallocated one allocates nothing.
  [[nodiscard]] ByteArray ToByteArray() &&;

  friend bool operator==(const ShapedBytes&, const ShapedBytes&) = default;

 private:
  // Assigned first, so that the bounds stay unchanged if there is no memory for the elements.
  InlineBytes elements_;
  std::uint16_t dimensions_ = 0;
  std::int32_t lowerBound_ = 0;
  std::int32_t upperBound_ = -1;
};

}  // namespace latchkey
