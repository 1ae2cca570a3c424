// A library to compare with, Latchkey itself among them: what it can do, as functions that work
// through a buffer.
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

// Works through the whole buffer: a cipher in place, going on where the call before ended; a hash
// leaves its value at the front. Throws where the library refuses. Empty where the library has no
// such thing.
using Work = std::function<void(std::span<std::uint8_t>)>;

// Throws unless `done`: a call that was refused takes no time worth a row.
inline void Require(bool done, const char* refusal) {
  if (!done) throw std::runtime_error(refusal);
}

struct Peer {
  std::string name;
  std::string version;
  Work (*cipher)(CipherId id, Direction direction);  // block ciphers in CBC mode, RC2 with 128 bits
  Work (*hash)(HashId id);                           // one whole hash
};

// All of them, Latchkey first. Sets the libraries up at the first call.
[[nodiscard]] const std::vector<Peer>& Peers();

// One of each library, in peers/.
[[nodiscard]] Peer LatchkeyPeer();
[[nodiscard]] Peer OpensslPeer();
[[nodiscard]] Peer GcryptPeer();
[[nodiscard]] Peer CryptoppPeer();
[[nodiscard]] Peer NettlePeer();
[[nodiscard]] Peer BotanPeer();

// The same key in all of them; no part of it is a weak key of DES.
inline constexpr std::array<std::uint8_t, 24> kKey{0x01, 0x23, 0x45, 0x67, 0x89, 0xAB, 0xCD, 0xEF,
                                                   0x13, 0x57, 0x9B, 0xDF, 0x02, 0x46, 0x8A, 0xCE,
                                                   0xFE, 0xDC, 0xBA, 0x98, 0x76, 0x54, 0x32, 0x10};
inline constexpr std::array<std::uint8_t, 8> kFeedback{};

[[nodiscard]] constexpr std::size_t KeySize(CipherId id) noexcept {
  if (id == CipherId::Des) return 8;
  return id == CipherId::TripleDes ? 24 : 16;
}

}  // namespace latchkey::bench
