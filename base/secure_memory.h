// Memory that holds secrets: one wiping routine, and containers that call it before they let go of
// their storage.
//
// A vector keeps all its elements in allocated storage and hands that storage over when it is
// moved. A string keeps short text inside the object itself, where no allocator sees it; secrets
// therefore live in WipedBytes while the component owns them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <type_traits>
#include <vector>

namespace latchkey {

// Overwrites `size` bytes at `memory` with zeros in a way that no optimiser removes. `memory` may
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

using WipedBytes = std::vector<std::uint8_t, WipingAllocator<std::uint8_t>>;

// Wipes the storage of a container of plain values when the scope ends, whatever way it ends.
// For text, the whole capacity is wiped, so that nothing is left of a longer earlier value.
template <class Container>
class WipeAtExit {
 public:
  explicit WipeAtExit(Container& container) noexcept : container_(container) {}
  WipeAtExit(const WipeAtExit&) = delete;
  WipeAtExit& operator=(const WipeAtExit&) = delete;
  ~WipeAtExit() {
    SecureWipe(container_.data(), container_.capacity() * sizeof(*container_.data()));
  }

 private:
  Container& container_;
};

}  // namespace latchkey
