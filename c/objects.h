// The objects that the pointers of the C interface point to.
#pragma once

#include <atomic>
#include <cstdint>
#include <cstring>

#include "c/call.h"
#include "crypto/engine/derived_key.h"

// An object begins with the mark of its kind, so that a pointer to another kind is recognized.
enum class latchkey_mark : std::uint32_t {
  Key = 0x4C4B6B31,
  Stream = 0x4C4B7331,
  Hash = 0x4C4B6831,
};

struct latchkey_key {
  const latchkey_mark mark = latchkey_mark::Key;
  mutable std::atomic<std::uint32_t> owners{1};
  latchkey::DerivedKey derived;
};

namespace latchkey::c {

// Whether `object` points to a live object of that kind. The mark is read as bytes: the object may
// be of another type.
[[nodiscard]] inline bool IsA(latchkey_mark kind, const void* object) noexcept {
  if (object == nullptr) return false;
  latchkey_mark mark{};
  std::memcpy(&mark, object, sizeof mark);
  return mark == kind;
}

// Removes an owner of the key, and destroys the key with the last one.
void ReleaseKey(const latchkey_key* key) noexcept;

// An owner of a key. Requires that another owner exists when it is made.
class KeyOwner {
 public:
  explicit KeyOwner(const latchkey_key& key) noexcept : key_(&key) { ++key.owners; }
  KeyOwner(const KeyOwner&) = delete;
  KeyOwner& operator=(const KeyOwner&) = delete;
  ~KeyOwner() { ReleaseKey(key_); }

  [[nodiscard]] const DerivedKey& Key() const noexcept { return key_->derived; }

 private:
  const latchkey_key* key_;
};

// Destroys an object of that kind; does nothing for null.
template <class Object>
std::int32_t CloseObject(latchkey_mark kind, Object* object) noexcept {
  if (object == nullptr) return LATCHKEY_OK;
  if (!IsA(kind, object)) return LATCHKEY_BAD_OBJECT;
  const platform::CancellationHold hold;
  delete object;
  return LATCHKEY_OK;
}

}  // namespace latchkey::c
