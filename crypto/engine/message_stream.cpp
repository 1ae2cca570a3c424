#include "crypto/engine/message_stream.h"

#include <algorithm>
#include <utility>

namespace latchkey {
namespace {

using provider::kBlockSize;

}  // namespace

MessageStream::MessageStream(const DerivedKey& key, CipherDirection direction)
    : session_(key.NewSession()),
      direction_(direction),
      isBlockCipher_(key.Settings().HasBlockCipher()),
      isGood_(session_.HasKey()) {}

// Decryption holds the last block back, because it may contain the padding.
std::size_t MessageStream::HeldOf(std::size_t total) const noexcept {
  if (!isBlockCipher_) return 0;
  const std::size_t rest = total % kBlockSize;
  const bool keepsWhole = direction_ == CipherDirection::Decrypt && rest == 0 && total > 0;
  return keepsWhole ? kBlockSize : rest;
}

std::size_t MessageStream::ReadyLength(std::size_t pieceLength) const noexcept {
  const std::size_t total = heldLength_ + pieceLength;
  return total - HeldOf(total);
}

bool MessageStream::Update(std::span<const std::uint8_t> piece, std::span<std::uint8_t> result) {
  WipeUnlessKept wipe(result);
  if (!std::exchange(isGood_, false)) return false;
  const std::size_t total = heldLength_ + piece.size();
  const std::size_t fromHeld = std::min(heldLength_, result.size());
  const std::size_t fromPiece = result.size() - fromHeld;
  std::copy_n(piece.begin(), fromPiece, std::copy_n(held_.begin(), fromHeld, result.begin()));
  // Hold the end of the piece; append it to the held bytes if no result is ready.
  std::copy(piece.begin() + static_cast<std::ptrdiff_t>(fromPiece), piece.end(),
            held_.begin() + (heldLength_ - fromHeld));
  heldLength_ = total - result.size();
  isGood_ = Transform(result);
  if (isGood_) wipe.Keep();
  return isGood_;
}

bool MessageStream::Transform(std::span<std::uint8_t> data) {
  while (!data.empty()) {
    const auto part = data.first(std::min(data.size(), provider::kLargestCall));
    auto length = static_cast<std::uint32_t>(part.size());
    if (session_.Transform(direction_, part, length, false) != CipherStep::Done) return false;
    data = data.subspan(part.size());
  }
  return true;
}

bool MessageStream::Finish(std::array<std::uint8_t, kMostAdded>& result, std::uint32_t& length) {
  WipeUnlessKept wipe(result);
  if (!std::exchange(isGood_, false)) return false;
  result = held_;
  length = static_cast<std::uint32_t>(std::exchange(heldLength_, 0));
  isGood_ = session_.Transform(direction_, result, length) == CipherStep::Done;
  if (isGood_) wipe.Keep();
  return isGood_;
}

}  // namespace latchkey
