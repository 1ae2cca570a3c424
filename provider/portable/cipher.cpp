#include "provider/portable/cipher.h"

#include <nettle/arctwo.h>

#include <algorithm>
#include <array>
#include <new>
#include <stdexcept>
#include <utility>

#include "provider/block_size.h"
#include "provider/portable/kernels/des_table_cipher.h"
#include "provider/portable/kernels/lane_kernels.h"
#include "provider/portable/kernels/rc2_words.h"
#include "provider/portable/kernels/rc4_words.h"
#include "provider/portable/kernels/stream_messages.h"
#include "provider/portable/message_lanes.h"
#include "provider/portable/padding.h"
#include "provider/portable/rc4_stream.h"

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

  void EncryptEach(const MessageBatch& batch) const noexcept override;
  void DecryptEach(const MessageBatch& batch) const noexcept override { EncryptEach(batch); }

 private:
  void EncryptOne(std::span<const std::uint8_t> message, const std::uint8_t* stream,
                  std::uint8_t* result) const noexcept;

  arcfour_ctx start_{};
  const WipeAtExit<arcfour_ctx> wipeStart_{start_};
  Rc4Stream stream_;
};

// Messages longer than the stream can be are encrypted one by one; without memory for the stream,
// all are.
void StreamCipher::EncryptEach(const MessageBatch& batch) const noexcept {
  const std::span<const std::uint32_t> lengths = batch.lengths;
  std::uint32_t longest = 0;  // of the messages that use the stream
  bool isForAll = true;
  for (const std::uint32_t length : lengths) {
    if (length <= Rc4Stream::kLongest) {
      longest = std::max(longest, length);
    } else {
      isForAll = false;
    }
  }
  const std::uint8_t* const stream = longest == 0 ? nullptr : stream_.First(longest, start_);
  std::ranges::fill(batch.failed, false);
  if (stream != nullptr && isForAll) {
    AddStreamToEach(stream, batch.messages, lengths, batch.results.data());
    return;
  }
  std::span<const std::uint8_t> rest = batch.messages;
  std::uint8_t* result = batch.results.data();
  for (const std::uint32_t& length : lengths) {
    EncryptOne(rest.first(length), stream, result);
    rest = rest.subspan(length);
    result += length;
  }
}

void StreamCipher::EncryptOne(std::span<const std::uint8_t> message, const std::uint8_t* stream,
                              std::uint8_t* result) const noexcept {
  const auto length = static_cast<std::uint32_t>(message.size());
  if (stream != nullptr && length <= Rc4Stream::kLongest) {
    AddStreamToEach(stream, message, {&length, 1}, result);
    return;
  }
  CipherState state;
  Start(state);
  AddRc4KeyStream(state.stream, {std::ranges::copy(message, result).out - length, length});
}

// Processes `length` bytes in place, whole blocks, and updates the feedback.
template <class Key>
using WorkOnBlocks = void (*)(const Key& key, std::uint8_t* data, std::size_t length,
                              std::uint8_t* feedback);

template <class Key>
struct BlockKernels {
  WorkOnBlocks<Key> encrypt;
  WorkOnBlocks<Key> decrypt;
  const LaneKernels<Key>& lanes;  // the same for much data, or for many messages
};

template <class Key>
class BlockCipher : public Cipher {
 public:
  explicit BlockCipher(const BlockKernels<Key>& kernels) noexcept : kernels_(kernels) {}

  [[nodiscard]] bool IsBlockCipher() const noexcept override { return true; }

  [[nodiscard]] bool UsesBatch(std::size_t length) const noexcept override {
    return length >= kernels_.lanes.worthDecrypting * kBlockSize;
  }

  void Start(CipherState& state) const noexcept override { state.feedback.fill(0); }

  void Encrypt(std::span<std::uint8_t> data, CipherState& state) const noexcept override {
    kernels_.encrypt(key_, data.data(), data.size(), state.feedback.data());
  }

  void Decrypt(std::span<std::uint8_t> data, CipherState& state) const noexcept override {
    const std::size_t batches = data.size() / BatchBytes();
    if (batches > 0) kernels_.lanes.decrypt(key_, data.data(), batches, state.feedback.data());
    const auto rest = data.subspan(batches * BatchBytes());
    if (UsesBatch(rest.size()) && state.batch) {
      DecryptPartOfBatch(rest, state);
    } else {
      kernels_.decrypt(key_, rest.data(), rest.size(), state.feedback.data());
    }
  }

  void EncryptEach(const MessageBatch& batch) const noexcept override {
    PadEach(batch);
    MessageLanes lanes(batch.lengths, batch.results.data());
    lanes.Run(key_, kernels_.lanes);
    lanes.Complete([this](std::uint8_t* data, std::size_t length, std::uint8_t* feedback) {
      kernels_.encrypt(key_, data, length, feedback);
    });
  }

  void DecryptEach(const MessageBatch& batch) const noexcept override {
    const auto data = batch.results.first(CopyWholeBlocks(batch));
    CipherState state;
    if (UsesBatch(data.size())) state.batch.reset(new (std::nothrow) std::uint8_t[kLargestBatch]);
    Decrypt(data, state);
    SeparateEach(batch);
  }

 protected:
  [[nodiscard]] Key& KeyToSet() noexcept { return key_; }

 private:
  [[nodiscard]] std::size_t BatchBytes() const noexcept {
    return kernels_.lanes.lanes * kBlockSize;
  }

  // The rest of the batch, after the data, is ignored and its result dropped.
  void DecryptPartOfBatch(std::span<std::uint8_t> data, CipherState& state) const noexcept {
    std::array<std::uint8_t, kBlockSize> last{};
    std::copy_n(data.end() - kBlockSize, kBlockSize, last.begin());
    std::uint8_t* const batch = state.batch.get();
    std::copy(data.begin(), data.end(), batch);
    kernels_.lanes.decrypt(key_, batch, 1, state.feedback.data());
    std::copy_n(batch, data.size(), data.begin());
    SecureWipe(batch, BatchBytes());
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
                                              KernelsOf(ChosenCpuLevel()).rc2};
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
                                                        KernelsOf(ChosenCpuLevel()).des};
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
