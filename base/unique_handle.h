// A move-only owner of a platform handle. A trait with three members describes the kind of handle:
// `Type`, `None()` (the value that means no handle) and `Close(Type)`, which throws nothing.
#pragma once

#include <utility>

namespace latchkey {

template <class Trait>
class UniqueHandle {
  static_assert(noexcept(Trait::Close(std::declval<typename Trait::Type>())));

 public:
  using Type = typename Trait::Type;

  UniqueHandle() noexcept = default;
  explicit UniqueHandle(Type handle) noexcept : handle_(handle) {}
  UniqueHandle(UniqueHandle&& other) noexcept : handle_(other.Release()) {}
  UniqueHandle& operator=(UniqueHandle&& other) noexcept {
    Reset(other.Release());
    return *this;
  }
  UniqueHandle(const UniqueHandle&) = delete;
  UniqueHandle& operator=(const UniqueHandle&) = delete;
  ~UniqueHandle() { Reset(); }

  [[nodiscard]] const Type& Get() const noexcept { return handle_; }
  explicit operator bool() const noexcept { return !(handle_ == Trait::None()); }

  // Returns the handle without closing it, and gives up ownership.
  [[nodiscard]] Type Release() noexcept { return std::exchange(handle_, Trait::None()); }

  // Closes the current handle, if any, and owns `handle` instead. Does nothing if it is the same
  // handle.
  void Reset(Type handle = Trait::None()) noexcept {
    const Type old = std::exchange(handle_, handle);
    if (!(old == Trait::None() || old == handle)) Trait::Close(old);
  }

  // Closes the current handle, if any, and returns the address to pass as an out parameter. Owns
  // the handle that is written there.
  [[nodiscard]] Type* Put() noexcept {
    Reset();
    return &handle_;
  }

 private:
  Type handle_ = Trait::None();
};

}  // namespace latchkey
