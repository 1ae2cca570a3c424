#include "crypto/shaped_bytes.h"

#include <algorithm>
#include <memory>
#include <utility>

#include "base/checked_arithmetic.h"
#include "platform/large_memory.h"

namespace latchkey {

ShapedBytes::ShapedBytes(std::initializer_list<std::uint8_t> elements)
    : ShapedBytes(std::span(elements.begin(), elements.size())) {}

ShapedBytes::ShapedBytes(std::span<const std::uint8_t> elements)
    : elements_(elements),
      dimensions_(1),
      upperBound_(NarrowTo<std::int32_t>(elements.size()) - 1) {}

ShapedBytes::ShapedBytes(ShapedBytes&& other) noexcept { *this = std::move(other); }

ShapedBytes& ShapedBytes::operator=(ShapedBytes&& other) noexcept {
  if (this == &other) return *this;
  dimensions_ = other.dimensions_;
  lowerBound_ = other.lowerBound_;
  upperBound_ = other.upperBound_;
  elements_ = other.TakeStorage();
  return *this;
}

ShapedBytes ShapedBytes::WithTrailingZero(std::span<const std::uint8_t> codes) {
  InlineBytes elements(codes.size() + 1);
  platform::ExpectFilling(elements.data(), elements.size());
  std::copy(codes.begin(), codes.end(), elements.data());
  return WithTrailingZero(std::move(elements), codes.size());
}

ShapedBytes ShapedBytes::WithTrailingZero(InlineBytes&& bytes, std::size_t length) {
  ShapedBytes array;
  array.dimensions_ = 1;
  array.upperBound_ = NarrowTo<std::int32_t>(length);
  array.elements_ = std::move(bytes);
  array.elements_.Cut(length + 1);
  array.elements_.data()[length] = 0;
  return array;
}

ShapedBytes ShapedBytes::WithShape(std::uint16_t dimensions, std::int32_t lowerBound,
                                   std::int32_t upperBound,
                                   std::span<const std::uint8_t> elements) {
  const std::int64_t count = std::int64_t{upperBound} - lowerBound + 1;
  if (dimensions == 1 && count != static_cast<std::int64_t>(elements.size())) {
    throw Fault(FaultNumber::SubscriptOutOfRange);
  }
  ShapedBytes array;
  array.dimensions_ = dimensions;
  array.lowerBound_ = lowerBound;
  array.upperBound_ = upperBound;
  array.elements_ = InlineBytes(elements);
  return array;
}

std::int32_t ShapedBytes::UpperBound() const {
  if (dimensions_ != 1) throw Fault(FaultNumber::SubscriptOutOfRange);
  return upperBound_;
}

std::span<const std::uint8_t> ShapedBytes::TextElements() const {
  const std::int32_t upperBound = UpperBound();
  if (lowerBound_ > 0 || upperBound < 0) throw Fault(FaultNumber::SubscriptOutOfRange);
  const auto count = static_cast<std::size_t>(upperBound);
  const auto first = static_cast<std::size_t>(-std::int64_t{lowerBound_});
  return Elements().subspan(first, count);
}

InlineBytes ShapedBytes::TakeStorage() noexcept {
  dimensions_ = 0;
  lowerBound_ = 0;
  upperBound_ = -1;
  return std::exchange(elements_, {});
}

ByteArray ShapedBytes::ToByteArray() && {
  ByteArray array;
  if (dimensions_ != 0) array.state_ = std::make_unique<ShapedBytes>(std::move(*this));
  return array;
}

}  // namespace latchkey
