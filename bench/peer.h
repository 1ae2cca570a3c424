// The libraries to compare, including Latchkey, as functions that process a buffer.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <stdexcept>
#include <string>
#include <vector>

namespace latchkey::bench {

enum class CipherId { Rc4, Rc2, Des, TripleDes };
enum class HashId { Md2, Md4, Md5, Sha1 };
enum class Direction { Encrypt, Decrypt };

// Processes the whole buffer: a cipher in place, continuing from the call before; a hash writes its
// value to the front. Throws if the library fails. Empty if the library does not support it.
using Workload = std::function<void(std::span<std::uint8_t>)>;

// Throws unless `done`, so that no failed call is measured.
inline void Require(bool done, const char* refusal) {
  if (!done) throw std::runtime_error(refusal);
}

struct Peer {
  std::string name;
  std::string version;
  // Block ciphers in CBC mode, RC2 with 128 bits.
  Workload (*cipher)(CipherId id, Direction direction);
  // One whole hash.
  Workload (*hash)(HashId id);
};

// All libraries, Latchkey first. The first call initializes them.
[[nodiscard]] const std::vector<Peer>& Peers();

// One for each library, in peers/.
[[nodiscard]] Peer LatchkeyPeer();
[[nodiscard]] Peer OpensslPeer();
[[nodiscard]] Peer GcryptPeer();
[[nodiscard]] Peer CryptoppPeer();
[[nodiscard]] Peer NettlePeer();
[[nodiscard]] Peer BotanPeer();

// The key for all libraries; no part of it is a weak key of DES.
inline constexpr std::array<std::uint8_t, 24> kKey{0x01, 0x23, 0x45, 0x67, 0x89, 0xAB, 0xCD, 0xEF,
                                                   0x13, 0x57, 0x9B, 0xDF, 0x02, 0x46, 0x8A, 0xCE,
                                                   0xFE, 0xDC, 0xBA, 0x98, 0x76, 0x54, 0x32, 0x10};
inline constexpr std::array<std::uint8_t, 8> kFeedback{};

[[nodiscard]] constexpr std::size_t KeySize(CipherId id) noexcept {
  if (id == CipherId::Des) return 8;
  return id == CipherId::TripleDes ? 24 : 16;
}

// Registers a row "work/peer" for each cipher direction and hash of each library that supports it.
// A repetition is one pass over one buffer of 16 MiB. Throws when a library's output differs from
// Latchkey's.
void AddRows();

}  // namespace latchkey::bench
