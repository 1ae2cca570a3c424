#include "tests/support/freed_memory.h"

#include <algorithm>

namespace latchkey::test {
namespace {

thread_local FreedMemory* watcher = nullptr;

}  // namespace

std::vector<std::uint8_t> AsText(std::span<const std::uint8_t> bytes) {
  std::vector<std::uint8_t> text;
  for (const std::uint8_t byte : bytes) text.insert(text.end(), {byte, 0});
  return text;
}

FreedMemory::FreedMemory(std::span<const std::uint8_t> secret) noexcept : secret_(secret) {
  watcher = this;
}

FreedMemory::~FreedMemory() { watcher = nullptr; }

void FreedMemory::Inspect(const void* memory, std::size_t size) noexcept {
  if (watcher == nullptr || memory == nullptr) return;
  const std::span block(static_cast<const std::uint8_t*>(memory), size);
  const auto found =
      std::search(block.begin(), block.end(), watcher->secret_.begin(), watcher->secret_.end());
  if (found != block.end()) ++watcher->blocksWithSecret_;
}

}  // namespace latchkey::test
