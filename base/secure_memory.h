// Tools for memory that holds secrets: a wiping function, a vector that wipes its storage, and a
// scope guard. For data that is usually short, use base/wiped_buffer.h.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <type_traits>
#include <vector>

namespace latchkey {

// Overwrites `size` bytes at `memory` with zeros in a way that no optimizer removes. `memory` may
// be null when `size` is 0.
void SecureWipe(void* memory, std::size_t size) noexcept;

// Allocates like std::allocator and wipes every block before it is freed.
template <class T>
class WipingAllocator {
  static_assert(std::is_trivially_copyable_v<T>, "only plain values can be wiped");

 public:
  using value_type = T;

  WipingAllocator() noexcept = default;
  template <class U>
  // NOLINTNEXTLINE(google-explicit-constructor): containers convert allocators
  WipingAllocator(const WipingAllocator<U>& /*other*/) noexcept {}

  [[nodiscard]] T* allocate(std::size_t count) { return std::allocator<T>().allocate(count); }

  void deallocate(T* memory, std::size_t count) noexcept {
    SecureWipe(memory, count * sizeof(T));
    std::allocator<T>().deallocate(memory, count);
  }

  friend bool operator==(const WipingAllocator&, const WipingAllocator&) noexcept { return true; }
};

// A vector that is wiped when it is freed and when it grows. Not a string, since that keeps short
// text inside the object, which no allocator wipes.
template <class T>
using WipedVector = std::vector<T, WipingAllocator<T>>;

using WipedBytes = WipedVector<std::uint8_t>;
using WipedText = WipedVector<char16_t>;  // in UTF-16

// Wipes a value when the scope ends, also by an exception. Wipes the whole capacity of a container
// of plain values, since a longer earlier value may be left there, and all bytes of a plain value.
template <class Value>
class WipeAtExit {
 public:
  explicit WipeAtExit(Value& value) noexcept : value_(value) {}
  WipeAtExit(const WipeAtExit&) = delete;
  WipeAtExit& operator=(const WipeAtExit&) = delete;
  ~WipeAtExit() {
    if constexpr (requires { value_.capacity(); }) {
      SecureWipe(value_.data(), value_.capacity() * sizeof(*value_.data()));
    } else {
      static_assert(std::is_trivially_copyable_v<Value>, "only plain values can be wiped");
      SecureWipe(&value_, sizeof value_);
    }
  }

 private:
  Value& value_;
};

// Wipes bytes when the scope ends, also by an exception, unless Keep was called.
class WipeUnlessKept {
 public:
  explicit WipeUnlessKept(std::span<std::uint8_t> bytes) noexcept : bytes_(bytes) {}
  WipeUnlessKept(const WipeUnlessKept&) = delete;
  WipeUnlessKept& operator=(const WipeUnlessKept&) = delete;
  ~WipeUnlessKept() { SecureWipe(bytes_.data(), bytes_.size()); }

  void Keep() noexcept { bytes_ = {}; }

 private:
  std::span<std::uint8_t> bytes_;
};

}  // namespace latchkey
