// Objects that clients refer to by number. A handle is looked up and never dereferenced, so any
// value can be checked safely. All tables share one counter and no handle is used again before it
// wraps, so a stale handle, or one of the wrong kind, is unknown.
#pragma once

#include <atomic>
#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <utility>

namespace latchkey {

// The next handle; no two tables get the same one.
inline std::uintptr_t NextHandle() noexcept {
  static std::atomic<std::uintptr_t> last{0};
  return ++last;
}

// Any thread may use a table. An object that is removed while another thread uses it lives until
// that thread releases it.
template <class Object>
class HandleTable {
 public:
  // Adds an object and returns its handle, which is never 0.
  [[nodiscard]] std::uintptr_t Add(std::shared_ptr<Object> object) {
    const std::lock_guard lock(mutex_);
    std::uintptr_t handle = NextHandle();
    while (handle == 0 || objects_.contains(handle)) handle = NextHandle();
    objects_.emplace(handle, std::move(object));
    return handle;
  }

  // Null for an unknown handle.
  [[nodiscard]] std::shared_ptr<Object> Find(std::uintptr_t handle) const {
    const std::lock_guard lock(mutex_);
    const auto found = objects_.find(handle);
    return found != objects_.end() ? found->second : nullptr;
  }

  // Removes the object from the table and returns it; null for an unknown handle.
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
  // A map, since it holds no memory when it is empty: unloading the library then leaks nothing.
  std::map<std::uintptr_t, std::shared_ptr<Object>> objects_;
};

}  // namespace latchkey
