#include "provider/portable/hash_object.h"

#include "provider/portable/kernels/hashes.h"

namespace latchkey::provider {

const nettle_hash* HashAlgorithm(AlgorithmId id) noexcept {
  switch (id) {
    case kAlgorithmMd2:
      return &nettle_md2;
    case kAlgorithmMd4:
      return &kMd4;
    case kAlgorithmMd5:
      return &kMd5;
    case kAlgorithmSha1:
      return &Sha1();
    default:
      return nullptr;
  }
}

HashObject::HashObject(HCRYPTPROV provider, const nettle_hash& algorithm)
    : provider_(provider), algorithm_(algorithm), context_(algorithm.context_size) {
  algorithm_.init(context_.data());
}

bool HashObject::Add(std::span<const std::uint8_t> data) noexcept {
  if (!value_.empty()) return false;
  if (!data.empty()) algorithm_.update(context_.data(), data.size(), data.data());
  return true;
}

const WipedBytes& HashObject::Value() {
  if (value_.empty()) {
    value_.resize(algorithm_.digest_size);
    algorithm_.digest(context_.data(), value_.size(), value_.data());
  }
  return value_;
}

WipedBytes HashOf(const nettle_hash& algorithm, std::span<const std::uint8_t> data) {
  WipedBytes context(algorithm.context_size);
  WipedBytes value(algorithm.digest_size);
  algorithm.init(context.data());
  algorithm.update(context.data(), data.size(), data.data());
  algorithm.digest(context.data(), value.size(), value.data());
  return value;
}

}  // namespace latchkey::provider
