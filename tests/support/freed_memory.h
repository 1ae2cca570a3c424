// Searches freed blocks of memory for a secret.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace latchkey::test {

// The bytes of a text with one 16-bit character for each byte.
[[nodiscard]] std::vector<std::uint8_t> AsText(std::span<const std::uint8_t> bytes);

// During its life, searches every block that its thread frees. One object at a time on each thread.
class FreedMemory {
 public:
  // `secret` must outlive this.
  explicit FreedMemory(std::span<const std::uint8_t> secret) noexcept;
  FreedMemory(const FreedMemory&) = delete;
  FreedMemory& operator=(const FreedMemory&) = delete;
  ~FreedMemory();

  // The number of blocks freed so far that held the secret.
  [[nodiscard]] std::size_t BlocksWithSecret() const noexcept { return blocksWithSecret_; }

  // Called by the test program's operator delete before it frees.
  static void Inspect(const void* memory, std::size_t size) noexcept;

 private:
  std::span<const std::uint8_t> secret_;
  std::size_t blocksWithSecret_ = 0;
};

}  // namespace latchkey::test
