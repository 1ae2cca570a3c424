// The C interface: digests.
#include <algorithm>
#include <memory>
#include <optional>
#include <utility>

#include "base/secure_memory.h"
#include "c/objects.h"
#include "crypto/algorithms.h"
#include "crypto/message_digest.h"
#include "crypto/open_provider.h"
#include "provider/block_size.h"

namespace latchkey::c {
namespace {

// Hashes messages, one after the other, with one algorithm.
class Hasher {
 public:
  Outcome Open(std::int32_t hash) {
    if (!std::in_range<std::int16_t>(hash)) return LATCHKEY_BAD_HASH;
    algorithm_ = FindHashAlgorithm(static_cast<std::int16_t>(hash));
    if (algorithm_.id == provider::kAlgorithmNone) return LATCHKEY_BAD_HASH;
    context_ = OpenSharedProvider(false);
    return context_ ? Outcome(LATCHKEY_OK) : Outcome(LATCHKEY_NO_PROVIDER, &check::kHashProvider);
  }

  Outcome Add(InputBytes data) {
    std::optional<MessageDigest> message = TakeMessage();
    if (!message) return LATCHKEY_PROVIDER_REFUSED;
    while (!data.empty()) {
      const auto part = data.first(std::min(data.size(), provider::kLargestCall));
      if (!message->Add(part)) return LATCHKEY_PROVIDER_REFUSED;
      data = data.subspan(part.size());
    }
    message_ = std::move(message);
    return LATCHKEY_OK;
  }

  // If the room is too small, the message is unchanged.
  Outcome Finish(Output& output) {
    const auto length = static_cast<std::size_t>(algorithm_.length);
    if (output.Room().size() < length) return output.TooSmall(length);
    std::optional<MessageDigest> message = TakeMessage();
    WipedBytes digest(length);
    return message && message->Read(digest) ? output.Deliver(digest) : LATCHKEY_PROVIDER_REFUSED;
  }

 private:
  // Removes and returns the current message, or begins one; nothing if the provider refuses. Add
  // puts the message back after a success, so a failure discards it.
  std::optional<MessageDigest> TakeMessage() {
    std::optional<MessageDigest> message = std::exchange(message_, std::nullopt);
    if (!message && !message.emplace().Begin(context_, algorithm_.id)) message.reset();
    return message;
  }

  HashAlgorithm algorithm_;
  UniqueContext context_;
  std::optional<MessageDigest> message_;
};

Outcome Digest(std::int32_t hash, InputBytes input, Output& output) {
  Hasher hasher;
  const Outcome opened = hasher.Open(hash);
  if (opened.status != LATCHKEY_OK) return opened;
  const Outcome added = hasher.Add(input);
  return added.status == LATCHKEY_OK ? hasher.Finish(output) : added;
}

}  // namespace
}  // namespace latchkey::c

struct latchkey_hash {
  const latchkey_mark mark = latchkey_mark::Hash;
  latchkey::c::Hasher hasher;
};

using namespace latchkey::c;  // NOLINT(google-build-using-namespace): their parts
using latchkey::trap::kCreateHash;

int32_t latchkey_digest(int32_t hash, const uint8_t* input, size_t input_length, uint8_t* digest,
                        size_t* digest_length, latchkey_failure* failure) {
  const Memory message(input, input_length);
  Output output(digest, digest_length);
  return Call(failure, kCreateHash, [&]() -> Outcome {
    if (!output.IsGood({message})) return LATCHKEY_BAD_ARGUMENT;
    return Digest(hash, message.Bytes(), output);
  });
}

int32_t latchkey_hash_open(int32_t hash, latchkey_hash** object, latchkey_failure* failure) {
  if (object != nullptr) *object = nullptr;
  return Call(failure, kCreateHash, [&]() -> Outcome {
    if (object == nullptr) return LATCHKEY_BAD_ARGUMENT;
    auto made = std::make_unique<latchkey_hash>();
    const Outcome opened = made->hasher.Open(hash);
    if (opened.status == LATCHKEY_OK) *object = made.release();
    return opened;
  });
}

int32_t latchkey_hash_update(latchkey_hash* object, const uint8_t* input, size_t input_length,
                             latchkey_failure* failure) {
  return Call(failure, kCreateHash, [&]() -> Outcome {
    const Memory piece(input, input_length);
    if (!piece.IsGood()) return LATCHKEY_BAD_ARGUMENT;
    if (!IsA(latchkey_mark::Hash, object)) return LATCHKEY_BAD_OBJECT;
    return object->hasher.Add(piece.Bytes());
  });
}

int32_t latchkey_hash_finish(latchkey_hash* object, uint8_t* digest, size_t* digest_length,
                             latchkey_failure* failure) {
  Output output(digest, digest_length);
  return Call(failure, kCreateHash, [&]() -> Outcome {
    if (!output.IsGood({})) return LATCHKEY_BAD_ARGUMENT;
    if (!IsA(latchkey_mark::Hash, object)) return LATCHKEY_BAD_OBJECT;
    return object->hasher.Finish(output);
  });
}

int32_t latchkey_hash_close(latchkey_hash* object) {
  return CloseObject(latchkey_mark::Hash, object);
}
