#include "latchkey/byte_array.h"

#include "crypto/shaped_bytes.h"

namespace latchkey {

ByteArray::ByteArray() noexcept = default;

ByteArray::ByteArray(const ByteArray& other)
    : state_(other.state_ ? std::make_unique<ShapedBytes>(*other.state_) : nullptr) {}

ByteArray& ByteArray::operator=(const ByteArray& other) {
  if (this != &other) *this = ByteArray(other);
  return *this;
}

ByteArray::ByteArray(ByteArray&& other) noexcept = default;

ByteArray& ByteArray::operator=(ByteArray&& other) noexcept = default;

ByteArray::~ByteArray() = default;

ByteArray::ByteArray(std::initializer_list<std::uint8_t> elements)
    : state_(std::make_unique<ShapedBytes>(elements)) {}

ByteArray::ByteArray(std::span<const std::uint8_t> elements)
    : state_(std::make_unique<ShapedBytes>(elements)) {}

ByteArray ByteArray::WithTrailingZero(std::span<const std::uint8_t> codes) {
  return ShapedBytes::WithTrailingZero(codes).ToByteArray();
}

ByteArray ByteArray::WithShape(std::uint16_t dimensions, std::int32_t lowerBound,
                               std::int32_t upperBound, std::span<const std::uint8_t> elements) {
  return ShapedBytes::WithShape(dimensions, lowerBound, upperBound, elements).ToByteArray();
}

std::uint16_t ByteArray::Dimensions() const noexcept { return state_ ? state_->Dimensions() : 0; }

std::int32_t ByteArray::LowerBound() const noexcept { return state_ ? state_->LowerBound() : 0; }

std::int32_t ByteArray::UpperBound() const {
  return state_ ? state_->UpperBound() : ShapedBytes().UpperBound();
}

std::span<const std::uint8_t> ByteArray::Elements() const noexcept {
  return state_ ? state_->Elements() : std::span<const std::uint8_t>();
}

std::span<const std::uint8_t> ByteArray::TextElements() const {
  return state_ ? state_->TextElements() : ShapedBytes().TextElements();
}

void ByteArray::Erase() noexcept { state_.reset(); }

bool ByteArray::operator==(const ByteArray& other) const noexcept {
  const bool bothAllocated = state_ && other.state_;
  return bothAllocated ? *state_ == *other.state_ : state_ == other.state_;
}

}  // namespace latchkey
