// The C interface: random bytes and the component's random texts.
#include <algorithm>

#include "base/checked_arithmetic.h"
#include "c/objects.h"
#include "crypto/text_codec.h"

namespace {

using namespace latchkey;  // NOLINT(google-build-using-namespace): all of it is the component's

// An operation of the component that gives text.
struct TextOperation {
  const TrapSite& trap;
  std::uint32_t flags;  // those that it knows
};

constexpr TextOperation kRandomText{trap::kCreateRandom, LATCHKEY_EXACT_LENGTH | LATCHKEY_AS_HEX};
constexpr TextOperation kSalt{trap::kCreateSaltValue, LATCHKEY_LETTERS_ONLY};

// What stands in the buffer is additional seed to the provider.
int FillBytes(CryptoObject& crypto, std::span<std::uint8_t> bytes) {
  const UniqueContext& provider = crypto.Provider(false);
  if (!provider) return Refuse(check::kRandomProvider);
  const auto length = NarrowTo<std::uint32_t>(bytes.size());
  const auto& [functions, context] = provider.Get();
  return functions->CryptGenRandom(context, length, bytes.data()) ? LATCHKEY_OK
                                                                  : LATCHKEY_PROVIDER_REFUSED;
}

// Runs an operation that gives text, and hands over one byte for each character. An operation
// gives empty text for a length above 0 only when it fails; where it then records nothing, the
// provider has refused.
template <class Make>
int DeliverText(latchkey_crypto* handle, const TextOperation& operation, std::uint32_t flags,
                std::int32_t length, Output output, Make make) {
  return WithOutput(output, {}, [&]() -> int {
    if ((flags & ~operation.flags) != 0) return LATCHKEY_BAD_FLAGS;
    return WithObject<CryptoTable>(handle, [&](CryptoObject& crypto) -> int {
      Text text = make(crypto.api);
      const WipeAtExit wipeText(text);
      const int status = StatusOfRecord();
      if (status != LATCHKEY_OK) return status;
      if (text.empty() && length > 0) return LATCHKEY_PROVIDER_REFUSED;
      return Trapped(operation.trap, [&] { return output.Deliver(EncodeText(text)); });
    });
  });
}

}  // namespace

int latchkey_random_bytes(latchkey_crypto* crypto, uint8_t* bytes, size_t length) {
  std::size_t room = length;
  Output output(bytes, &room);
  const int status = WithOutput(output, {}, [&] {
    return WithObject<CryptoTable>(crypto, [&](CryptoObject& object) {
      return Operation(trap::kCreateRandom, [&] { return FillBytes(object, {bytes, length}); });
    });
  });
  // A provider that fails may leave some bytes behind.
  if (status != LATCHKEY_OK && bytes != nullptr) std::fill_n(bytes, length, std::uint8_t{0});
  return status;
}

int latchkey_create_random(latchkey_crypto* crypto, uint32_t flags, int32_t length, uint8_t* output,
                           size_t* outputLength) {
  return DeliverText(crypto, kRandomText, flags, length, {output, outputLength},
                     [&](clsCryptoAPI& api) {
                       return api.CreateRandom(length, (flags & LATCHKEY_EXACT_LENGTH) != 0,
                                               (flags & LATCHKEY_AS_HEX) != 0);
                     });
}

int latchkey_create_salt(latchkey_crypto* crypto, uint32_t flags, int32_t length, uint8_t* output,
                         size_t* outputLength) {
  return DeliverText(crypto, kSalt, flags, length, {output, outputLength}, [&](clsCryptoAPI& api) {
    return api.CreateSaltValue(length, (flags & LATCHKEY_LETTERS_ONLY) != 0);
  });
}
