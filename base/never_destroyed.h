// An object of static duration that is never destroyed.
#pragma once

#include <cstddef>
#include <new>

namespace latchkey {

// Holds a T in its own memory and never destroys it, so that the destructors of static objects may
// still use it after main has returned.
template <class T>
class NeverDestroyed {
 public:
  NeverDestroyed() { ::new (static_cast<void*>(&memory_)) T(); }
  NeverDestroyed(const NeverDestroyed&) = delete;
  NeverDestroyed& operator=(const NeverDestroyed&) = delete;
  ~NeverDestroyed() = default;

  [[nodiscard]] T& Get() noexcept { return *std::launder(reinterpret_cast<T*>(&memory_)); }

 private:
  alignas(T) std::byte memory_[sizeof(T)]{};  // NOLINT(*-avoid-c-arrays): raw memory
};

}  // namespace latchkey
