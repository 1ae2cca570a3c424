#include <utility>

#include "bench/rows.h"

namespace latchkey::bench {

void AddCipherRows() {
  constexpr std::pair<CipherId, const char*> kCiphers[] = {{CipherId::Des, "DES-CBC"},
                                                           {CipherId::TripleDes, "3DES-CBC"},
                                                           {CipherId::Rc2, "RC2-CBC"},
                                                           {CipherId::Rc4, "RC4"}};
  for (const auto& [id, name] : kCiphers) {
    for (const Direction direction : {Direction::Decrypt, Direction::Encrypt}) {
      if (id == CipherId::Rc4 && direction == Direction::Decrypt) continue;  // the same operation
      const char* const verb = direction == Direction::Encrypt ? " encryption" : " decryption";
      AddRows(name + std::string(verb),
              [id, direction](const Peer& peer) { return peer.cipher(id, direction); });
    }
  }
}

}  // namespace latchkey::bench
