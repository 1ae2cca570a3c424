// A cipher over a stream of any length, in constant memory, on as many processors as it can use.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "crypto/cipher_sites.h"

namespace latchkey::cli {

// Where the bytes come from and go to. The functions are called from different threads, but read
// never beside itself, nor write.
struct ByteStreams {
  // Fills the span; fewer bytes only at the end, or when stopped.
  std::function<std::size_t(std::span<std::uint8_t>)> read;
  // Makes a read that waits return soon. Called beside it; must not raise anything.
  std::function<void()> stopReading;
  // Takes the result of the next `consumed` bytes read.
  std::function<void(std::span<const std::uint8_t>, std::size_t consumed)> write;
};

struct CipherWork {
  CipherDirection direction = CipherDirection::Encrypt;
  // One for each worker where pieces are worked on at once: decryption in CBC mode. Otherwise one.
  std::vector<PasswordKey> keys;
  // How many threads take part; the number of keys where there are several.
  std::size_t workers = 1;
  // What a failure of the cipher is about.
  std::string file;
};

struct ByteCounts {
  std::uint64_t in = 0;
  std::uint64_t out = 0;
};

// Large enough for the widest kernel to be busy, small enough to stay in a processor's cache.
inline constexpr std::size_t kCipherPiece = std::size_t{1} << 20;

// The threads worth having for input of that many bytes (nothing: not known). One for what fits
// into a piece and on a machine with one processor.
[[nodiscard]] std::size_t CipherWorkers(std::optional<std::uint64_t> size, bool inOrder);

// Runs the cipher over all of the input: what one call for the whole would give. `pieceSize` is a
// multiple of the block size. What the functions raise comes through, and what was written before
// stays. A failure of the cipher is raised as CommandError.
ByteCounts RunCipher(CipherWork& work, const ByteStreams& streams,
                     std::size_t pieceSize = kCipherPiece);

}  // namespace latchkey::cli
