// The start of RC4's key stream, which is the same for every message of a key.
#pragma once

#include <nettle/arcfour.h>

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>

#include "base/secure_memory.h"

namespace latchkey::provider {

// Any number of threads may use it at once. It has no lock, because another thread could hold it
// while the process forks. Wiped on destruction.
class Rc4Stream {
 public:
  static constexpr std::size_t kLongest = std::size_t{1} << 16;  // whole steps of the kernel

  Rc4Stream() = default;
  Rc4Stream(const Rc4Stream&) = delete;
  Rc4Stream& operator=(const Rc4Stream&) = delete;
  ~Rc4Stream();

  // Returns at least the first `length` bytes of the key stream that begins in the state `start`.
  // `length` is at most kLongest, and `start` is the same in every call. The bytes live as long as
  // this object. Null if memory for them is lacking.
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
