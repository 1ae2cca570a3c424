// A message of any length in pieces.
#pragma once

#include <array>
#include <cstdint>
#include <span>

#include "base/secure_memory.h"
#include "crypto/engine/derived_key.h"
#include "provider/block_size.h"

namespace latchkey {

// Use it on one thread at a time. The key must outlive it.
class MessageStream {
 public:
  // The most bytes that Update's result is longer than its piece, and the most that Finish returns.
  static constexpr std::size_t kMostAdded = provider::kLargestPadding;

  MessageStream(const DerivedKey& key, CipherDirection direction);

  // False after the provider refused to copy the key or to process a message.
  [[nodiscard]] bool IsGood() const noexcept { return isGood_; }
  [[nodiscard]] CipherDirection Direction() const noexcept { return direction_; }

  // The length of the result that Update will give for a piece of that length.
  [[nodiscard]] std::size_t ReadyLength(std::size_t pieceLength) const noexcept;

  // Adds a piece. `result` has ReadyLength bytes and does not overlap the piece. False if the
  // provider refuses: then the result is zeros, and every later call returns false. The same
  // applies after a fault of the provider, which is passed to the caller.
  [[nodiscard]] bool Update(std::span<const std::uint8_t> piece, std::span<std::uint8_t> result);

  // Ends the message and returns the rest of its result, with its length. The next Update begins a
  // new message. False for a bad message, with the same effects as in Update.
  [[nodiscard]] bool Finish(std::array<std::uint8_t, kMostAdded>& result, std::uint32_t& length);

 private:
  // How many bytes at the end of `total` are held back until more follow.
  [[nodiscard]] std::size_t HeldOf(std::size_t total) const noexcept;
  [[nodiscard]] bool Transform(std::span<std::uint8_t> data);

  PasswordKey session_;
  CipherDirection direction_;
  bool isBlockCipher_;
  bool isGood_;
  std::array<std::uint8_t, provider::kBlockSize> held_{};
  std::size_t heldLength_ = 0;
  const WipeAtExit<decltype(held_)> wipeHeld_{held_};
};

}  // namespace latchkey
