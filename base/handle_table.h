// Objects known to a client by number. A number is looked up and never followed, so that any value
// at all can be told from a handle in use. No number is given out again before the counter of all
// tables wraps, so that one kept too long or used for the wrong kind of object is simply unknown.
#pragma once

#include <atomic>
#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <utility>

namespace latchkey {

// The number after the last one that any table was given.
inline std::uintptr_t NextHandle() noexcept {
  static std::atomic<std::uintptr_t> last{0};
  return ++last;
}

// Any thread may use a table. An object that is taken out while another thread works with it lives
// until that thread lets go of it.
template <class Object>
class HandleTable {
 public:
  // The handle by which the object is known from now on; never 0.
  [[nodiscard]] std::uintptr_t Add(std::shared_ptr<Object> object) {
    return AddMade([&] { return std::move(object); });
  }

  // The same for an object that `make` gives, once there is a place for it: what making it changes
  // is not undone for want of one. `make` does not use the table.
  template <class Make>
  [[nodiscard]] std::uintptr_t AddMade(Make&& make) {
    const std::lock_guard lock(mutex_);
    std::uintptr_t handle = NextHandle();
    while (handle == 0 || objects_.contains(handle)) handle = NextHandle();
    const auto place = objects_.emplace(handle, nullptr).first;
    try {
      place->second = std::forward<Make>(make)();
    } catch (...) {
      objects_.erase(place);
      throw;
    }
    return handle;
  }

  // Null for an unknown handle.
  [[nodiscard]] std::shared_ptr<Object> Find(std::uintptr_t handle) const {
    const std::lock_guard lock(mutex_);
    const auto found = objects_.find(handle);
    return found != objects_.end() ? found->second : nullptr;
  }

  // The object, which the table lets go of; null for an unknown handle.
  std::shared_ptr<Object> Take(std::uintptr_t handle) {
    const std::lock_guard lock(mutex_);
    const auto entry = objects_.extract(handle);
    return entry.empty() ? nullptr : std::move(entry.mapped());
  }

  // Keep every other thread out, for a fork of the process.
  void Hold() const { mutex_.lock(); }
  void Release() const { mutex_.unlock(); }

  template <class Predicate>
  void RemoveIf(Predicate predicate) {
    const std::lock_guard lock(mutex_);
    std::erase_if(objects_, [&](const auto& entry) { return predicate(*entry.second); });
  }

 private:
  mutable std::mutex mutex_;
  // Keeps no memory when it is empty, so that a library unloaded then leaves none.
  std::map<std::uintptr_t, std::shared_ptr<Object>> objects_;
};

}  // namespace latchkey
