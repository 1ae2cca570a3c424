// A buffer for secrets that needs no allocation for short data.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <type_traits>
#include <utility>

#include "base/secure_memory.h"

namespace latchkey {

// Elements that are wiped before their storage is released. Up to `inlineCapacity` of them are in
// the object itself; more are allocated. New elements are not initialized, so that unused memory is
// never touched.
template <class Element, std::size_t inlineCapacity>
class WipedBuffer {
  static_assert(std::is_trivially_copyable_v<Element> &&
                    std::is_trivially_default_constructible_v<Element>,
                "only plain values can be wiped and left uninitialized");

 public:
  static constexpr std::size_t kInlineCapacity = inlineCapacity;

  // Not defaulted: value-initialization would then write all elements.
  // NOLINTBEGIN(cppcoreguidelines-pro-type-member-init,modernize-use-equals-default)
  WipedBuffer() noexcept {}
  explicit WipedBuffer(std::size_t size) { Renew(size); }
  explicit WipedBuffer(std::span<const Element> elements) : WipedBuffer(elements.size()) {
    std::ranges::copy(elements, data());
  }
  WipedBuffer(const WipedBuffer& other) : WipedBuffer(other.All()) {}
  WipedBuffer(WipedBuffer&& other) noexcept { Take(other); }
  // NOLINTEND(cppcoreguidelines-pro-type-member-init,modernize-use-equals-default)

  WipedBuffer& operator=(const WipedBuffer& other) {
    if (this != &other) *this = WipedBuffer(other);
    return *this;
  }
  WipedBuffer& operator=(WipedBuffer&& other) noexcept {
    if (this != &other) {
      Wipe();
      Take(other);
    }
    return *this;
  }

  ~WipedBuffer() { Wipe(); }

  [[nodiscard]] Element* data() noexcept { return allocated_ ? allocated_.get() : inline_.data(); }
  [[nodiscard]] const Element* data() const noexcept {
    return allocated_ ? allocated_.get() : inline_.data();
  }
  [[nodiscard]] std::size_t size() const noexcept { return size_; }
  [[nodiscard]] std::span<Element> All() noexcept { return {data(), size_}; }
  [[nodiscard]] std::span<const Element> All() const noexcept { return {data(), size_}; }

  // Wipes the elements and makes room for `size` new ones, in the same storage if it is large
  // enough. If memory runs out, raises bad_alloc and leaves the buffer empty.
  void Renew(std::size_t size) {
    Wipe();
    size_ = wipedSize_ = 0;
    if (size > capacity_) {
      // NOLINTNEXTLINE(modernize-avoid-c-arrays)
      allocated_ = std::make_unique_for_overwrite<Element[]>(size);
      capacity_ = size;
    }
    size_ = wipedSize_ = size;
  }

  // Keeps the first `size` elements. The others are wiped later, together with these.
  void Cut(std::size_t size) noexcept { size_ = std::min(size, size_); }

  // Until the next Renew, wipes only the first `size` elements. Requires that none after these was
  // written since the last Renew.
  void LimitWipeTo(std::size_t size) noexcept { wipedSize_ = std::min(size, size_); }

  friend bool operator==(const WipedBuffer& left, const WipedBuffer& right) noexcept {
    return std::ranges::equal(left.All(), right.All());
  }

 private:
  void Wipe() noexcept { SecureWipe(data(), wipedSize_ * sizeof(Element)); }

  // Moves the contents of `other` here and leaves it empty. The caller has wiped this object's
  // elements.
  void Take(WipedBuffer& other) noexcept {
    allocated_ = std::move(other.allocated_);
    capacity_ = std::exchange(other.capacity_, inlineCapacity);
    size_ = std::exchange(other.size_, 0);
    wipedSize_ = std::exchange(other.wipedSize_, 0);
    if (allocated_) return;
    std::copy_n(other.inline_.begin(), wipedSize_, inline_.begin());
    SecureWipe(other.inline_.data(), wipedSize_ * sizeof(Element));
  }

  std::array<Element, inlineCapacity> inline_;
  std::unique_ptr<Element[]> allocated_;  // NOLINT(modernize-avoid-c-arrays)
  std::size_t capacity_ = inlineCapacity;
  std::size_t size_ = 0;
  std::size_t wipedSize_ = 0;  // how many of the first elements may have been written
};

// Room for most passwords, keys, digests and short messages.
using InlineBytes = WipedBuffer<std::uint8_t, 128>;

}  // namespace latchkey
