// The C interface: a message in pieces.
#include <algorithm>
#include <memory>
#include <optional>

#include "base/secure_memory.h"
#include "c/objects.h"
#include "crypto/engine/message_stream.h"

struct latchkey_stream {
  latchkey_stream(const latchkey_key& key, latchkey::CipherDirection direction)
      : owner(key), message(owner.Key(), direction) {}

  const latchkey_mark mark = latchkey_mark::Stream;
  latchkey::c::KeyOwner owner;
  latchkey::MessageStream message;
};

namespace latchkey::c {
namespace {

std::optional<CipherDirection> DirectionOf(std::int32_t direction) noexcept {
  switch (direction) {
    case LATCHKEY_ENCRYPT:
      return CipherDirection::Encrypt;
    case LATCHKEY_DECRYPT:
      return CipherDirection::Decrypt;
    default:
      return std::nullopt;
  }
}

Outcome Update(MessageStream& message, InputBytes piece, Output& output) {
  if (!message.IsGood()) return SitesOf(message.Direction()).cipher;
  const std::size_t ready = message.ReadyLength(piece.size());
  if (ready > output.Room().size()) return output.TooSmall(ready);
  if (!message.Update(piece, output.Room().first(ready))) {
    return SitesOf(message.Direction()).cipher;
  }
  return output.Finish(ready);
}

// The rest is at most one block. If the room is smaller than that, nothing changes.
Outcome Finish(MessageStream& message, Output& output) {
  if (!message.IsGood()) return SitesOf(message.Direction()).cipher;
  if (output.Room().size() < MessageStream::kMostAdded) {
    return output.TooSmall(MessageStream::kMostAdded);
  }
  std::array<std::uint8_t, MessageStream::kMostAdded> rest{};
  const WipeAtExit wipeRest(rest);
  std::uint32_t length = 0;
  if (!message.Finish(rest, length)) return SitesOf(message.Direction()).cipher;
  return output.Deliver(std::span(rest).first(length));
}

// Runs `body` on a stream's message. Faults are recorded at the trap of the stream's direction.
template <class Body>
std::int32_t OnMessage(latchkey_stream* stream, latchkey_failure* failure, Body&& body) noexcept {
  const bool isStream = IsA(latchkey_mark::Stream, stream);
  const auto direction = isStream ? stream->message.Direction() : CipherDirection::Encrypt;
  return Call(failure, SitesOf(direction).trap, [&]() -> Outcome {
    return isStream ? body(stream->message) : Outcome(LATCHKEY_BAD_OBJECT);
  });
}

}  // namespace
}  // namespace latchkey::c

using namespace latchkey::c;  // NOLINT(google-build-using-namespace): their parts

int32_t latchkey_stream_open(latchkey_key* key, int32_t direction, latchkey_stream** stream,
                             latchkey_failure* failure) {
  if (stream != nullptr) *stream = nullptr;
  const auto wanted = DirectionOf(direction);
  const auto& sites = SitesOf(wanted.value_or(latchkey::CipherDirection::Encrypt));
  return Call(failure, sites.trap, [&]() -> Outcome {
    if (stream == nullptr || !wanted) return LATCHKEY_BAD_ARGUMENT;
    if (!IsA(latchkey_mark::Key, key)) return LATCHKEY_BAD_OBJECT;
    auto object = std::make_unique<latchkey_stream>(*key, *wanted);
    if (!object->message.IsGood()) return sites.key;
    *stream = object.release();
    return LATCHKEY_OK;
  });
}

int32_t latchkey_stream_update(latchkey_stream* stream, const uint8_t* input, size_t input_length,
                               uint8_t* output, size_t* output_length, latchkey_failure* failure) {
  const Memory piece(input, input_length);
  Output result(output, output_length);
  const bool isGood = result.IsGood({piece});
  return OnMessage(stream, failure, [&](latchkey::MessageStream& message) {
    return isGood ? Update(message, piece.Bytes(), result) : Outcome(LATCHKEY_BAD_ARGUMENT);
  });
}

int32_t latchkey_stream_finish(latchkey_stream* stream, uint8_t* output, size_t* output_length,
                               latchkey_failure* failure) {
  Output result(output, output_length);
  const bool isGood = result.IsGood({});
  return OnMessage(stream, failure, [&](latchkey::MessageStream& message) {
    return isGood ? Finish(message, result) : Outcome(LATCHKEY_BAD_ARGUMENT);
  });
}

int32_t latchkey_stream_close(latchkey_stream* stream) {
  return CloseObject(latchkey_mark::Stream, stream);
}
