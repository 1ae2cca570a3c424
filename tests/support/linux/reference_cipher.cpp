#include "tests/support/linux/reference_cipher.h"

#include <nettle/arcfour.h>
#include <nettle/arctwo.h>
#include <nettle/cbc.h>
#include <nettle/des.h>

#include <stdexcept>

namespace latchkey::test {
namespace {

using namespace provider;  // NOLINT: the names of the provider's algorithms

// Gives Nettle's block functions the same signature. One of them takes a non-constant context.
template <class Context, auto encrypt>
void Blocks(const void* context, std::size_t length, std::uint8_t* to, const std::uint8_t* from) {
  encrypt(static_cast<Context*>(const_cast<void*>(context)), length, to, from);
}

template <class Context, auto encrypt>
Bytes Cbc(const Context& context, Bytes feedback, std::span<const std::uint8_t> data) {
  Bytes result(data.size());
  cbc_encrypt(&context, Blocks<Context, encrypt>, 8, feedback.data(), data.size(), result.data(),
              data.data());
  return result;
}

Bytes Rc4(const Bytes& key, std::span<const std::uint8_t> data) {
  arcfour_ctx context{};
  arcfour_set_key(&context, key.size(), key.data());
  Bytes result(data.size());
  arcfour_crypt(&context, data.size(), result.data(), data.data());
  return result;
}

Bytes TripleDes(const Bytes& key, const Bytes& feedback, std::span<const std::uint8_t> data) {
  Bytes keys = key;
  if (keys.size() == 16) keys.insert(keys.end(), key.begin(), key.begin() + 8);
  des3_ctx context{};
  des3_set_key(&context, keys.data());
  return Cbc<des3_ctx, des3_encrypt>(context, feedback, data);
}

}  // namespace

Bytes ReferenceEncryption(AlgorithmId id, const Bytes& key, const Bytes& feedback,
                          std::span<const std::uint8_t> data) {
  if (id == kAlgorithmRc4) return Rc4(key, data);
  if (id == kAlgorithm3Des || id == kAlgorithm3Des112) return TripleDes(key, feedback, data);
  if (id == kAlgorithmDes) {
    des_ctx context{};
    des_set_key(&context, key.data());
    return Cbc<des_ctx, des_encrypt>(context, feedback, data);
  }
  arctwo_ctx context{};
  arctwo_set_key_ekb(&context, key.size(), key.data(), static_cast<unsigned>(8 * key.size()));
  return Cbc<arctwo_ctx, arctwo_encrypt>(context, feedback, data);
}

std::size_t ReferenceKeySize(AlgorithmId id) {
  switch (id) {
    case kAlgorithmDes:
      return 8;
    case kAlgorithm3Des:
      return 24;
    case kAlgorithmRc2:
    case kAlgorithmRc4:
    case kAlgorithm3Des112:
      return 16;
    default:
      throw std::invalid_argument("no such cipher");
  }
}

}  // namespace latchkey::test
