#include <nettle/arcfour.h>
#include <nettle/arctwo.h>
#include <nettle/cbc.h>
#include <nettle/des.h>
#include <nettle/nettle-meta.h>
#include <nettle/version.h>

#include "bench/peer.h"

namespace latchkey::bench {
namespace {

template <class Context, auto function>
void Blocks(const void* context, std::size_t length, std::uint8_t* to, const std::uint8_t* from) {
  function(static_cast<Context*>(const_cast<void*>(context)), length, to, from);
}

template <class Context, auto encrypt, auto decrypt>
Workload CbcWork(Context context, Direction direction) {
  if (direction == Direction::Encrypt) {
    return [context, feedback = kFeedback](std::span<std::uint8_t> data) mutable {
      cbc_encrypt(&context, Blocks<Context, encrypt>, 8, feedback.data(), data.size(), data.data(),
                  data.data());
    };
  }
  return [context, feedback = kFeedback](std::span<std::uint8_t> data) mutable {
    cbc_decrypt(&context, Blocks<Context, decrypt>, 8, feedback.data(), data.size(), data.data(),
                data.data());
  };
}

Workload Rc4Work() {
  arcfour_ctx context{};
  arcfour_set_key(&context, KeySize(CipherId::Rc4), kKey.data());
  return [context](std::span<std::uint8_t> data) mutable {
    arcfour_crypt(&context, data.size(), data.data(), data.data());
  };
}

Workload Rc2Work(Direction direction) {
  arctwo_ctx context{};
  arctwo_set_key(&context, KeySize(CipherId::Rc2), kKey.data());
  return CbcWork<arctwo_ctx, arctwo_encrypt, arctwo_decrypt>(context, direction);
}

Workload DesWork(Direction direction) {
  des_ctx context{};
  des_set_key(&context, kKey.data());
  return CbcWork<des_ctx, des_encrypt, des_decrypt>(context, direction);
}

Workload TripleDesWork(Direction direction) {
  des3_ctx context{};
  des3_set_key(&context, kKey.data());
  return CbcWork<des3_ctx, des3_encrypt, des3_decrypt>(context, direction);
}

Workload CipherWork(CipherId id, Direction direction) {
  switch (id) {
    case CipherId::Rc4:
      return Rc4Work();
    case CipherId::Rc2:
      return Rc2Work(direction);
    case CipherId::Des:
      return DesWork(direction);
    case CipherId::TripleDes:
      return TripleDesWork(direction);
  }
  return {};
}

Workload HashWork(HashId id) {
  const nettle_hash* const hashes[] = {&nettle_md2, &nettle_md4, &nettle_md5, &nettle_sha1};
  return [hash = hashes[static_cast<int>(id)]](std::span<std::uint8_t> data) {
    alignas(16) std::uint8_t context[512];
    hash->init(context);
    hash->update(context, data.size(), data.data());
    hash->digest(context, hash->digest_size, data.data());
  };
}

}  // namespace

Peer NettlePeer() {
  return {"nettle",
          std::to_string(nettle_version_major()) + "." + std::to_string(nettle_version_minor()),
          CipherWork, HashWork};
}

}  // namespace latchkey::bench
