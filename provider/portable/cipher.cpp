#include "provider/portable/cipher.h"

#include <nettle/arcfour.h>
#include <nettle/arctwo.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <stdexcept>
#include <utility>

#include "provider/block_size.h"
#include "provider/portable/kernels/bulk_decryption.h"
#include "provider/portable/kernels/des_table_cipher.h"
#include "provider/portable/kernels/rc2_words.h"
#include "provider/portable/kernels/rc4_words.h"

namespace latchkey::provider {
namespace {

class StreamCipher final : public Cipher {
 public:
  explicit StreamCipher(WipedBytes key) : key_(std::move(key)) { StreamCipher::Restart(); }

  [[nodiscard]] bool IsBlockCipher() const noexcept override { return false; }
  void Encrypt(std::span<std::uint8_t> data) noexcept override { AddRc4KeyStream(state_, data); }
  void Decrypt(std::span<std::uint8_t> data) noexcept override { Encrypt(data); }
  void Restart() noexcept override { arcfour_set_key(&state_, key_.size(), key_.data()); }

 private:
  WipedBytes key_;
  arcfour_ctx state_{};
  const WipeAtExit<arcfour_ctx> wipeState_{state_};
};

// Processes `length` bytes in place, whole blocks, and updates the feedback.
template <class Key>
using WorkOnBlocks = void (*)(const Key& key, std::uint8_t* data, std::size_t length,
                              std::uint8_t* feedback);

template <class Key>
struct BlockKernels {
  WorkOnBlocks<Key> encrypt;
  WorkOnBlocks<Key> decrypt;
  const BulkDecryption<Key>& bulk;  // the same decryption, for much data
};

template <class Key>
class BlockCipher : public Cipher {
 public:
  // NOLINTNEXTLINE(*-member-init): not the batch
  explicit BlockCipher(const BlockKernels<Key>& kernels) noexcept : kernels_(kernels) {}

  [[nodiscard]] bool IsBlockCipher() const noexcept override { return true; }

  void Encrypt(std::span<std::uint8_t> data) noexcept override {
    kernels_.encrypt(key_, data.data(), data.size(), feedback_.data());
  }

  void Decrypt(std::span<std::uint8_t> data) noexcept override {
    const BulkDecryption<Key>& bulk = kernels_.bulk;
    const std::size_t batches = data.size() / bulk.batchBytes;
    if (batches > 0) bulk.decrypt(key_, data.data(), batches, feedback_.data());
    const auto rest = data.subspan(batches * bulk.batchBytes);
    if (rest.size() >= bulk.worthBytes) {
      DecryptPartOfBatch(rest);
    } else {
      kernels_.decrypt(key_, rest.data(), rest.size(), feedback_.data());
    }
  }

  void Restart() noexcept override { feedback_.fill(0); }

 protected:
  [[nodiscard]] Key& KeyToSet() noexcept { return key_; }

 private:
  // The rest of the batch, after the data, is ignored and its result dropped.
  void DecryptPartOfBatch(std::span<std::uint8_t> data) noexcept {
    std::array<std::uint8_t, kBlockSize> last{};
    std::copy_n(data.end() - kBlockSize, kBlockSize, last.begin());
    std::copy(data.begin(), data.end(), batch_.begin());
    kernels_.bulk.decrypt(key_, batch_.data(), 1, feedback_.data());
    std::copy_n(batch_.begin(), data.size(), data.begin());
    SecureWipe(batch_.data(), kernels_.bulk.batchBytes);
    feedback_ = last;
  }

  const BlockKernels<Key>& kernels_;
  // A partly filled batch; a member, since a thread's stack may be small.
  std::array<std::uint8_t, kLargestBatch> batch_;
  Key key_{};
  const WipeAtExit<Key> wipeKey_{key_};
  std::array<std::uint8_t, kBlockSize> feedback_{};  // ciphertext, not secret
};

class Rc2Cipher final : public BlockCipher<Rc2Key> {
 public:
  Rc2Cipher(WipedBytes key, unsigned effectiveBits) : BlockCipher(Kernels()), key_(std::move(key)) {
    Rc2Cipher::SetEffectiveBits(effectiveBits);
  }

  [[nodiscard]] bool HasEffectiveBits() const noexcept override { return true; }
  void SetEffectiveBits(unsigned bits) noexcept override {
    arctwo_ctx expanded{};
    const WipeAtExit wipeExpanded(expanded);
    arctwo_set_key_ekb(&expanded, key_.size(), key_.data(), bits);
    std::copy(std::begin(expanded.S), std::end(expanded.S), KeyToSet().words.begin());
    Restart();
  }

 private:
  static const BlockKernels<Rc2Key>& Kernels() noexcept {
    static const BlockKernels<Rc2Key> kernels{&rc2::EncryptCbc, &rc2::DecryptCbc,
                                              Rc2Bulk(ChosenCpuLevel())};
    return kernels;
  }

  WipedBytes key_;
};

// DES with one key of eight bytes, 3DES with three. Weak keys are accepted.
class DesCipher final : public BlockCipher<des::KeySchedule> {
 public:
  explicit DesCipher(const WipedBytes& keys) noexcept : BlockCipher(Kernels()) {
    des::ExpandKeys(keys.data(), keys.size() / des::kKeySize, KeyToSet());
  }

 private:
  static const BlockKernels<des::KeySchedule>& Kernels() noexcept {
    static const BlockKernels<des::KeySchedule> kernels{&des::EncryptCbc, &des::DecryptCbc,
                                                        DesBulk(ChosenCpuLevel())};
    return kernels;
  }
};

// Two-key 3DES uses its first key again as the third.
WipedBytes ThreeKeys(const WipedBytes& twoKeys) {
  WipedBytes keys(twoKeys.size() + des::kKeySize);
  std::copy(twoKeys.begin(), twoKeys.end(), keys.begin());
  std::copy_n(twoKeys.begin(), des::kKeySize, keys.end() - des::kKeySize);
  return keys;
}

}  // namespace

std::unique_ptr<Cipher> MakeCipher(AlgorithmId id, const WipedBytes& key, unsigned effectiveBits) {
  switch (id) {
    case kAlgorithmRc4:
      return std::make_unique<StreamCipher>(key);
    case kAlgorithmRc2:
      return std::make_unique<Rc2Cipher>(key, effectiveBits);
    case kAlgorithmDes:
    case kAlgorithm3Des:
      return std::make_unique<DesCipher>(key);
    case kAlgorithm3Des112:
      return std::make_unique<DesCipher>(ThreeKeys(key));
    default:
      throw std::invalid_argument("no such cipher");
  }
}

}  // namespace latchkey::provider
