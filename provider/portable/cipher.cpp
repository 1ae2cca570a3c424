#include "provider/portable/cipher.h"

#include <nettle/arctwo.h>

#include <algorithm>
#include <array>
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
  explicit StreamCipher(const WipedBytes& key) noexcept {
    arcfour_set_key(&start_, key.size(), key.data());
  }

  [[nodiscard]] bool IsBlockCipher() const noexcept override { return false; }
  void Start(CipherState& state) const noexcept override { state.stream = start_; }
  void Encrypt(std::span<std::uint8_t> data, CipherState& state) const noexcept override {
    AddRc4KeyStream(state.stream, data);
  }
  void Decrypt(std::span<std::uint8_t> data, CipherState& state) const noexcept override {
    Encrypt(data, state);
  }

 private:
  arcfour_ctx start_{};
  const WipeAtExit<arcfour_ctx> wipeStart_{start_};
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
  explicit BlockCipher(const BlockKernels<Key>& kernels) noexcept : kernels_(kernels) {}

  [[nodiscard]] bool IsBlockCipher() const noexcept override { return true; }

  [[nodiscard]] bool UsesBatch(std::size_t length) const noexcept override {
    return length >= kernels_.bulk.worthBytes;
  }

  void Start(CipherState& state) const noexcept override { state.feedback.fill(0); }

  void Encrypt(std::span<std::uint8_t> data, CipherState& state) const noexcept override {
    kernels_.encrypt(key_, data.data(), data.size(), state.feedback.data());
  }

  void Decrypt(std::span<std::uint8_t> data, CipherState& state) const noexcept override {
    const BulkDecryption<Key>& bulk = kernels_.bulk;
    const std::size_t batches = data.size() / bulk.batchBytes;
    if (batches > 0) bulk.decrypt(key_, data.data(), batches, state.feedback.data());
    const auto rest = data.subspan(batches * bulk.batchBytes);
    if (rest.size() >= bulk.worthBytes && state.batch) {
      DecryptPartOfBatch(rest, state);
    } else {
      kernels_.decrypt(key_, rest.data(), rest.size(), state.feedback.data());
    }
  }

 protected:
  [[nodiscard]] Key& KeyToSet() noexcept { return key_; }

 private:
  // The rest of the batch, after the data, is ignored and its result dropped.
  void DecryptPartOfBatch(std::span<std::uint8_t> data, CipherState& state) const noexcept {
    std::array<std::uint8_t, kBlockSize> last{};
    std::copy_n(data.end() - kBlockSize, kBlockSize, last.begin());
    std::uint8_t* const batch = state.batch.get();
    std::copy(data.begin(), data.end(), batch);
    kernels_.bulk.decrypt(key_, batch, 1, state.feedback.data());
    std::copy_n(batch, data.size(), data.begin());
    SecureWipe(batch, kernels_.bulk.batchBytes);
    state.feedback = last;
  }

  const BlockKernels<Key>& kernels_;
  Key key_{};
  const WipeAtExit<Key> wipeKey_{key_};
};

class Rc2Cipher final : public BlockCipher<Rc2Key> {
 public:
  Rc2Cipher(WipedBytes key, unsigned effectiveBits) noexcept
      : BlockCipher(Kernels()), key_(std::move(key)) {
    arctwo_ctx expanded{};
    const WipeAtExit wipeExpanded(expanded);
    arctwo_set_key_ekb(&expanded, key_.size(), key_.data(), effectiveBits);
    std::copy(std::begin(expanded.S), std::end(expanded.S), KeyToSet().words.begin());
  }

  [[nodiscard]] bool HasEffectiveBits() const noexcept override { return true; }
  [[nodiscard]] std::shared_ptr<const Cipher> WithEffectiveBits(unsigned bits) const override {
    return std::make_shared<Rc2Cipher>(key_, bits);
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

std::shared_ptr<const Cipher> MakeCipher(AlgorithmId id, const WipedBytes& key,
                                         unsigned effectiveBits) {
  switch (id) {
    case kAlgorithmRc4:
      return std::make_shared<StreamCipher>(key);
    case kAlgorithmRc2:
      return std::make_shared<Rc2Cipher>(key, effectiveBits);
    case kAlgorithmDes:
    case kAlgorithm3Des:
      return std::make_shared<DesCipher>(key);
    case kAlgorithm3Des112:
      return std::make_shared<DesCipher>(ThreeKeys(key));
    default:
      throw std::invalid_argument("no such cipher");
  }
}

}  // namespace latchkey::provider
