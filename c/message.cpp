// The C interface: whole messages.
#include <algorithm>

#include "base/checked_arithmetic.h"
#include "base/secure_memory.h"
#include "c/objects.h"

namespace latchkey::c {
namespace {

// Transforms the message at the start of `buffer` in place. A failure fills the buffer with zeros.
Outcome TransformIn(std::span<std::uint8_t> buffer, const DerivedKey& key,
                    CipherDirection direction, std::uint32_t& length) {
  WipeUnlessKept result(buffer);
  if (!key.Transform(direction, buffer, length)) return SitesOf(direction).cipher;
  result.Keep();
  return LATCHKEY_OK;
}

Outcome Transform(const DerivedKey& key, CipherDirection direction, InputBytes input,
                  Output& output) {
  const bool encrypts = direction == CipherDirection::Encrypt;
  const auto needed = NarrowTo<std::uint32_t>(key.RoomFor(direction, input.size()));
  auto length = static_cast<std::uint32_t>(input.size());
  if (needed <= output.Room().size()) {
    const auto buffer = output.Room().first(needed);
    std::copy(input.begin(), input.end(), buffer.begin());
    const Outcome outcome = TransformIn(buffer, key, direction, length);
    if (outcome.status == LATCHKEY_OK) output.Finish(length);
    return outcome;
  }
  if (encrypts) return output.TooSmall(needed);
  // The plaintext may be shorter than `needed`, and fit.
  WipedBytes buffer(input.begin(), input.end());
  const Outcome outcome = TransformIn(buffer, key, direction, length);
  return outcome.status == LATCHKEY_OK ? output.Deliver(std::span(buffer).first(length)) : outcome;
}

std::int32_t Run(const latchkey_key* key, CipherDirection direction, const Memory& input,
                 Output output, latchkey_failure* failure) noexcept {
  return Call(failure, SitesOf(direction).trap, [&]() -> Outcome {
    if (!output.IsGood({input})) return LATCHKEY_BAD_ARGUMENT;
    if (!IsA(latchkey_mark::Key, key)) return LATCHKEY_BAD_OBJECT;
    return Transform(key->derived, direction, input.Bytes(), output);
  });
}

}  // namespace
}  // namespace latchkey::c

using namespace latchkey::c;  // NOLINT(google-build-using-namespace): their parts
using latchkey::CipherDirection;

int32_t latchkey_encrypt(const latchkey_key* key, const uint8_t* input, size_t input_length,
                         uint8_t* output, size_t* output_length, latchkey_failure* failure) {
  return Run(key, CipherDirection::Encrypt, {input, input_length}, {output, output_length},
             failure);
}

int32_t latchkey_decrypt(const latchkey_key* key, const uint8_t* input, size_t input_length,
                         uint8_t* output, size_t* output_length, latchkey_failure* failure) {
  return Run(key, CipherDirection::Decrypt, {input, input_length}, {output, output_length},
             failure);
}
