#include <utility>

#include "bench/rows.h"

namespace latchkey::bench {

void AddHashRows() {
  constexpr std::pair<HashId, const char*> kHashes[] = {
      {HashId::Md2, "MD2"}, {HashId::Md4, "MD4"}, {HashId::Md5, "MD5"}, {HashId::Sha1, "SHA-1"}};
  for (const auto& [id, name] : kHashes) {
    AddRows(name, [id](const Peer& peer) { return peer.hash(id); });
  }
}

}  // namespace latchkey::bench
