// The buffer through which a search reads the process's memory.
#pragma once

#include <algorithm>
#include <array>
#include <cstdint>

#include "tests/system/secrets/process_memory.h"

namespace latchkey::test {

// Cuts ranges of memory into pieces, without the buffer itself.
class PieceBuffer {
 public:
  // `read(address, target, size)` copies memory and gives the number of bytes copied.
  template <class Read>
  void VisitRange(std::uintptr_t begin, std::uintptr_t end, MemoryVisitor& visitor, Read&& read) {
    const auto own = reinterpret_cast<std::uintptr_t>(bytes_.data());
    const std::uintptr_t ownEnd = own + bytes_.size();
    if (begin < ownEnd && own < end) {
      if (begin < own) VisitPlain(begin, own, visitor, read);
      if (ownEnd < end) VisitPlain(ownEnd, end, visitor, read);
    } else {
      VisitPlain(begin, end, visitor, read);
    }
  }

 private:
  template <class Read>
  void VisitPlain(std::uintptr_t begin, std::uintptr_t end, MemoryVisitor& visitor, Read& read) {
    constexpr std::size_t kStep = kSize - kPieceOverlap;
    for (std::uintptr_t at = begin; at < end; at += std::min<std::uintptr_t>(kStep, end - at)) {
      const std::size_t wanted = std::min<std::uintptr_t>(kSize, end - at);
      const std::size_t got = read(at, bytes_.data(), wanted);
      if (got > 0) visitor.Visit(at, std::span(bytes_).first(got), std::min(got, kStep));
    }
  }

  static constexpr std::size_t kSize = 1 << 20;
  std::array<std::uint8_t, kSize> bytes_{};
};

}  // namespace latchkey::test
