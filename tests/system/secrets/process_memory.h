// All memory of the process, for a search.
#pragma once

#include <cstdint>
#include <span>

namespace latchkey::test {

// A visitor of pieces of memory.
class MemoryVisitor {
 public:
  MemoryVisitor() = default;
  MemoryVisitor(const MemoryVisitor&) = delete;
  MemoryVisitor& operator=(const MemoryVisitor&) = delete;
  virtual ~MemoryVisitor() = default;

  // `address` is the original address of the copied piece. The first `owned` bytes belong to it;
  // the bytes after them are repeated in the next piece, so that no pattern of up to kPieceOverlap
  // bytes is split between two pieces.
  virtual void Visit(std::uintptr_t address, std::span<const std::uint8_t> piece,
                     std::size_t owned) = 0;
};

inline constexpr std::size_t kPieceOverlap = 64;

// Clears the registers of data from the test's own last copy, since the system saves them in the
// process's memory: Windows at each exception, Wine at each call.
void ForgetRegisters() noexcept;

// Visits all memory that the process can read (on Windows: write): heap, freed blocks, all stacks,
// data. Copies it piece by piece into one buffer, which is excluded. Allocates nothing.
void VisitProcessMemory(MemoryVisitor& visitor);

}  // namespace latchkey::test
