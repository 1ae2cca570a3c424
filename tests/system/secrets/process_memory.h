// All memory of the process, as a search sees it.
#pragma once

#include <cstdint>
#include <span>

namespace latchkey::test {

// What looks at a piece of memory.
class MemoryVisitor {
 public:
  MemoryVisitor() = default;
  MemoryVisitor(const MemoryVisitor&) = delete;
  MemoryVisitor& operator=(const MemoryVisitor&) = delete;
  virtual ~MemoryVisitor() = default;

  // `address` is where the copied piece stands. `owned` of its bytes belong to it; those behind
  // them come again with the next one, so that nothing of up to kPieceOverlap bytes falls between
  // two pieces.
  virtual void Visit(std::uintptr_t address, std::span<const std::uint8_t> piece,
                     std::size_t owned) = 0;
};

inline constexpr std::size_t kPieceOverlap = 64;

// Clears what the test's own last copy left in registers, where the system would save those in the
// process's memory: Windows does at each exception, Wine at each call.
void ForgetRegisters() noexcept;

// Shows the visitor everything that the process can read (on Windows: write): heap, freed blocks,
// all stacks, data. Copied piece by piece into one buffer, which itself is left out. Allocates
// nothing.
void VisitProcessMemory(MemoryVisitor& visitor);

}  // namespace latchkey::test
