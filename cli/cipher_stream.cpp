#include "cli/cipher_stream.h"

#include <algorithm>
#include <array>

#include "base/checked_arithmetic.h"
#include "base/secure_memory.h"
#include "cli/failure.h"
#include "cli/piece_relay.h"
#include "platform/processors.h"
#include "provider/block_size.h"

namespace latchkey::cli {
namespace {

using provider::kBlockSize;

// The buffer of a piece contains the block before it in the stream, the piece, and room for
// padding. Reading a piece also reads the first byte of the next one, which shows that the piece is
// not the last.
class CipherStages final : public PieceStages {
 public:
  CipherStages(CipherWork& work, const ByteStreams& streams, std::size_t pieceSize)
      : work_(work), streams_(streams), pieceSize_(pieceSize) {}

  [[nodiscard]] bool WorksInOrder() const noexcept override { return work_.keys.size() == 1; }
  void Read(StreamPiece& piece) override;
  void Work(StreamPiece& piece, std::size_t worker) override;
  void Write(const StreamPiece& piece) override;
  void StopReading() noexcept override { streams_.stopReading(); }

  [[nodiscard]] const ByteCounts& Counts() const noexcept { return counts_; }

 private:
  CipherWork& work_;
  const ByteStreams& streams_;
  const std::size_t pieceSize_;
  ByteCounts counts_;
  // The last block of the piece read before and the first byte of the next one.
  std::array<std::uint8_t, kBlockSize + 1> border_{};
  const WipeAtExit<decltype(border_)> wipeBorder_{border_};
};

void CipherStages::Read(StreamPiece& piece) {
  const std::size_t known = piece.number == 0 ? 0 : 1;
  if (piece.bytes.size() == 0) piece.bytes.Renew(kBlockSize + pieceSize_ + kBlockSize);
  std::ranges::copy(border_, piece.bytes.data());
  const std::span room = piece.bytes.All().subspan(kBlockSize, pieceSize_ + 1);
  const std::size_t count = known + streams_.read(room.subspan(known));
  piece.isLast = count <= pieceSize_;
  piece.length = piece.consumed = std::min(count, pieceSize_);
  if (!piece.isLast) std::ranges::copy(room.last(border_.size()), border_.data());
  // With a short input, the rest of the pages is neither used nor wiped.
  if (piece.isLast && piece.number == 0) {
    piece.bytes.LimitWipeTo(kBlockSize + count + kBlockSize);
  }
}

// In CBC mode a block depends only on the ciphertext block before it. Decrypting that block first
// sets the chain, no matter what the key decrypted earlier; its plaintext is dropped.
void CipherStages::Work(StreamPiece& piece, std::size_t worker) {
  const bool primes = !WorksInOrder() && piece.number > 0;
  const std::size_t before = primes ? kBlockSize : 0;
  PasswordKey& key = work_.keys[WorksInOrder() ? 0 : worker];
  auto length = NarrowTo<std::uint32_t>(piece.length + before);
  const CipherStep step = key.Transform(
      work_.direction, piece.bytes.All().subspan(kBlockSize - before), length, piece.isLast);
  if (step != CipherStep::Done) {
    throw CommandError(FailureAt(SitesOf(work_.direction).SiteOf(step), work_.file));
  }
  piece.length = length - before;
}

void CipherStages::Write(const StreamPiece& piece) {
  streams_.write(piece.bytes.All().subspan(kBlockSize, piece.length));
  counts_.in += piece.consumed;
  counts_.out += piece.length;
}

}  // namespace

std::size_t CipherWorkers(std::optional<std::uint64_t> size, bool inOrder) {
  // If pieces are processed in order, at most three threads are busy: one reads, one runs the
  // cipher, and one writes. More threads than processors would wait for a turn and then for a
  // processor.
  const std::size_t most = inOrder ? 3 : 8;
  if (size && *size <= kCipherPiece) return 1;
  return std::min(platform::UsableProcessors(), most);
}

ByteCounts RunCipher(CipherWork& work, const ByteStreams& streams, std::size_t pieceSize) {
  CipherStages stages(work, streams, pieceSize);
  PieceRelay(stages).Run(work.workers);
  return stages.Counts();
}

}  // namespace latchkey::cli
