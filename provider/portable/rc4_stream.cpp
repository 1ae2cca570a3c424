#include "provider/portable/rc4_stream.h"

#include <algorithm>
#include <bit>
#include <new>

#include "provider/portable/kernels/rc4_words.h"

namespace latchkey::provider {

Rc4Stream::~Rc4Stream() {
  for (const Part* part = longest_; part != nullptr;) {
    const std::unique_ptr<const Part> owned(part);
    part = owned->shorter;
  }
}

// The lengths are powers of two, so all parts together are shorter than twice the longest one.
std::unique_ptr<Rc4Stream::Part> Rc4Stream::Make(std::size_t length,
                                                 const arcfour_ctx& start) noexcept {
  constexpr std::size_t kShortest = 256;
  std::unique_ptr<Part> part;
  try {
    part = std::make_unique<Part>();
    part->bytes.resize(std::bit_ceil(std::max(length, kShortest)));
  } catch (const std::bad_alloc&) {
    return nullptr;
  }
  arcfour_ctx state = start;
  const WipeAtExit wipeState(state);
  AddRc4KeyStream(state, part->bytes);
  return part;
}

const std::uint8_t* Rc4Stream::First(std::size_t length, const arcfour_ctx& start) const noexcept {
  const Part* known = longest_.load(std::memory_order_acquire);
  std::unique_ptr<Part> made;
  while (known == nullptr || known->bytes.size() < length) {
    if (!made) made = Make(length, start);
    if (!made) return nullptr;
    made->shorter = known;
    if (longest_.compare_exchange_weak(known, made.get(), std::memory_order_acq_rel)) {
      return made.release()->bytes.data();
    }
  }
  return known->bytes.data();
}

}  // namespace latchkey::provider
