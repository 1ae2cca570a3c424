// A cipher over a stream of any length, in constant memory, on several processors.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "crypto/cipher_sites.h"

namespace latchkey::cli {

// Source and destination of the bytes. Different threads call the functions, but only one at a time
// calls `read`, and only one at a time calls `write`.
struct ByteStreams {
  // Fills the span; returns fewer bytes only at the end, or when stopped.
  std::function<std::size_t(std::span<std::uint8_t>)> read;
  // Makes a waiting read return soon. Called from another thread; must not throw.
  std::function<void()> stopReading;
  // Writes the next part of the result.
  std::function<void(std::span<const std::uint8_t>)> write;
};

// The cipher to run, its keys and the number of threads.
struct CipherWork {
  CipherDirection direction = CipherDirection::Encrypt;
  // One key for each worker if pieces are independent (decryption in CBC mode), otherwise one key.
  std::vector<PasswordKey> keys;
  // The number of threads. With several keys, the number of keys.
  std::size_t workers = 1;
  std::string file;  // for failures
};

struct ByteCounts {
  std::uint64_t in = 0;
  std::uint64_t out = 0;
};

// The length of a piece in bytes: large enough to keep the widest kernel busy, small enough to stay
// in a processor's cache.
inline constexpr std::size_t kCipherPiece = std::size_t{1} << 20;

// The number of threads for input of `size` bytes, which may be unknown. One for input that fits
// into a piece, and on a machine with one processor.
[[nodiscard]] std::size_t CipherWorkers(std::optional<std::uint64_t> size, bool inOrder);

// Runs the cipher over the whole input, with the result of a single call. `pieceSize` is a multiple
// of the block size. Exceptions of the functions pass through; bytes written before stay written.
// A failure of the cipher is raised as CommandError.
ByteCounts RunCipher(CipherWork& work, const ByteStreams& streams,
                     std::size_t pieceSize = kCipherPiece);

}  // namespace latchkey::cli
