// The ciphertext that decrypt reads, with the trailing spaces that a client cut.
#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <utility>

#include "crypto/engine/derived_key.h"

namespace latchkey::cli {

enum class Spaces { Keep, Restore };

// Used by one thread at a time.
class CiphertextInput {
 public:
  // Fills the span; returns fewer bytes only at the end.
  using Reader = std::function<std::size_t(std::span<std::uint8_t>)>;

  CiphertextInput(Reader reader, const KeySettings& settings, Spaces spaces)
      : reader_(std::move(reader)), settings_(settings), spaces_(spaces) {}

  // Reads the next bytes. With Restore, bytes of value 20 (hexadecimal) are added at the end of a
  // block cipher's input to complete the last block.
  [[nodiscard]] std::size_t Read(std::span<std::uint8_t> bytes);

  // The number of bytes added so far.
  [[nodiscard]] std::size_t Restored() const noexcept { return restored_; }

  // Advice about a length that a block cipher does not produce; empty for other lengths. Call it
  // after the end was read.
  [[nodiscard]] std::string LengthHint() const;

 private:
  const Reader reader_;
  const KeySettings settings_;
  const Spaces spaces_;
  std::uint64_t length_ = 0;
  bool hasEnded_ = false;
  std::size_t missing_ = 0;
  std::size_t restored_ = 0;
};

}  // namespace latchkey::cli
