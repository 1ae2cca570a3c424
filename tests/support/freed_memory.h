// What is left of a secret in blocks of memory when they are freed.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace latchkey::test {

// The memory of a text that has one character for each of the bytes.
[[nodiscard]] std::vector<std::uint8_t> AsText(std::span<const std::uint8_t> bytes);

// Searches, while it lives, every block that its thread frees. One at a time on a thread.
class FreedMemory {
 public:
  // `secret` must outlive this.
  explicit FreedMemory(std::span<const std::uint8_t> secret) noexcept;
  FreedMemory(const FreedMemory&) = delete;
  FreedMemory& operator=(const FreedMemory&) = delete;
  ~FreedMemory();

  // How many of the blocks freed so far held the secret.
  [[nodiscard]] std::size_t BlocksWithSecret() const noexcept { return blocksWithSecret_; }

  // Called by the test program's operator delete before it frees.
  static void Inspect(const void* memory, std::size_t size) noexcept;

 private:
  std::span<const std::uint8_t> secret_;
  std::size_t blocksWithSecret_ = 0;
};

}  // namespace latchkey::test
