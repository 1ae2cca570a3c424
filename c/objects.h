// What stands behind the handles of the C interface.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <thread>

#include "base/handle_table.h"
#include "base/never_destroyed.h"
#include "c/call.h"
#include "crypto/provider_handles.h"
#include "latchkey/cls_crypto_api.h"
#include "latchkey/cls_timer.h"

namespace latchkey {

// The thread that an object belongs to: the one that made it.
struct ThreadBound {
  std::thread::id thread = std::this_thread::get_id();
};

struct ThreadObject : ThreadBound {
  ErrorRecordScope record;
};

struct CryptoObject : ThreadBound {
  clsCryptoAPI api;
  std::array<UniqueContext, 2> providers;  // for exact bytes: base, enhanced

  // The provider, opened on first need and kept; no handle when it cannot be opened.
  [[nodiscard]] const UniqueContext& Provider(bool enhanced);
};

// Owns the objects behind one kind of handle, a number in the form of a pointer. Any thread may use
// it.
template <class Object, class Handle>
class ObjectTable {
 public:
  // The table of this kind. It lives as long as the process, also for calls after main.
  static ObjectTable& Instance() {
    static NeverDestroyed<ObjectTable> table;
    return table.Get();
  }

  [[nodiscard]] Handle* Open() {
    // NOLINTNEXTLINE(performance-no-int-to-ptr): nobody follows it
    return reinterpret_cast<Handle*>(objects_.AddMade(std::make_shared<Object>));
  }

  // Nothing for what is no handle of this kind.
  [[nodiscard]] std::shared_ptr<Object> Find(const Handle* handle) const {
    return objects_.Find(reinterpret_cast<std::uintptr_t>(handle));
  }

  // The object, which the table lets go of, or nothing.
  std::shared_ptr<Object> Take(const Handle* handle) {
    return objects_.Take(reinterpret_cast<std::uintptr_t>(handle));
  }

 private:
  HandleTable<Object> objects_;
};

using ThreadTable = ObjectTable<ThreadObject, latchkey_thread>;
using CryptoTable = ObjectTable<CryptoObject, latchkey_crypto>;
using TimerTable = ObjectTable<clsTimer, latchkey_timer>;

// Runs `body` on the object of a handle that belongs to the calling thread.
template <class Table, class Handle, class Body>
int WithObject(const Handle* handle, Body&& body) {
  const auto object = Table::Instance().Find(handle);
  if (object == nullptr) return LATCHKEY_BAD_HANDLE;
  if (object->thread != std::this_thread::get_id()) return LATCHKEY_WRONG_THREAD;
  return std::forward<Body>(body)(*object);
}

template <class Table, class Handle>
int OpenObject(Handle** handle) noexcept {
  if (handle == nullptr) return LATCHKEY_BAD_ARGUMENT;
  *handle = nullptr;
  return Guarded([&] {
    *handle = Table::Instance().Open();
    return LATCHKEY_OK;
  });
}

template <class Table, class Handle>
int CloseObject(Handle* handle) noexcept {
  if (handle == nullptr) return LATCHKEY_OK;
  return Guarded([&] {
    return Table::Instance().Take(handle) == nullptr ? LATCHKEY_BAD_HANDLE : LATCHKEY_OK;
  });
}

}  // namespace latchkey
