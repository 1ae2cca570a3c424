// A move-only owner of a platform handle. What kind of handle it is comes from a trait with three
// members: `Type`, `None()` (the value that means no handle) and `Close(Type)`.
#pragma once

#include <utility>

#include "platform/stack_wipe.h"

namespace latchkey::platform {

template <class Trait>
class UniqueHandle {
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

  // Gives the handle away unclosed.
  [[nodiscard]] Type Release() noexcept { return std::exchange(handle_, Trait::None()); }

  // Closes the handle held, if any, and takes over `handle`. Taking over the handle already held
  // changes nothing. Closing runs during clean-up, where a fault must not stop what follows.
  void Reset(Type handle = Trait::None()) noexcept {
    const Type old = std::exchange(handle_, handle);
    if (old == Trait::None() || old == handle) return;
    try {
      Trait::Close(old);
      return;
    } catch (...) {  // NOLINT(bugprone-empty-catch): clean-up skips its own faults
    }
    WipeStackFarBelow();
  }

 private:
  Type handle_ = Trait::None();
};

}  // namespace latchkey::platform
