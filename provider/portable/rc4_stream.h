// The start of RC4's key stream, which is the same for every message of a key.
#pragma once

#include <nettle/arcfour.h>

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>

#include "base/secure_memory.h"

namespace latchkey::provider {

// Any number of threads may use it at once. No lock, which another thread could hold while the
// process forks. Wiped on destruction.
class Rc4Stream {
 public:
  static constexpr std::size_t kLongest = std::size_t{1} << 16;  // whole steps of the kernel

  Rc4Stream() = default;
  Rc4Stream(const Rc4Stream&) = delete;
  Rc4Stream& operator=(const Rc4Stream&) = delete;
  ~Rc4Stream();

  // At least the first `length` bytes, at most kLongest, of the stream that begins with `start`,
  // the same in every call. They live as long as this object. Null without memory for them.
  [[nodiscard]] const std::uint8_t* First(std::size_t length,
                                          const arcfour_ctx& start) const noexcept;

 private:
  struct Part {
    WipedBytes bytes;
    const Part* shorter = nullptr;  // other threads may still use it
  };

  [[nodiscard]] static std::unique_ptr<Part> Make(std::size_t length,
                                                  const arcfour_ctx& start) noexcept;

  mutable std::atomic<const Part*> longest_{nullptr};
};

}  // namespace latchkey::provider
