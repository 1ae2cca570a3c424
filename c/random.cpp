// The C interface: random data.
#include <algorithm>
#include <array>
#include <string_view>

#include "base/checked_arithmetic.h"
#include "base/secure_memory.h"
#include "c/call.h"
#include "crypto/open_provider.h"

namespace latchkey::c {
namespace {

constexpr std::string_view kLetters = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";
// Bytes below this number map to each letter equally often; other bytes are dropped.
constexpr std::size_t kFairBytes = 256 - 256 % kLetters.size();

// The provider's random source, opened by the constructor.
class RandomSource {
 public:
  [[nodiscard]] bool IsOpen() const noexcept { return static_cast<bool>(context_); }

  [[nodiscard]] bool Fill(std::span<std::uint8_t> bytes) {
    const auto length = NarrowTo<std::uint32_t>(bytes.size());
    return context_.Get().provider->CryptGenRandom(context_.Get().value, length, bytes.data());
  }

 private:
  UniqueContext context_ = OpenProvider(provider::SharedCryptoProvider(), false);
};

Outcome FillLetters(RandomSource& source, std::span<std::uint8_t> letters) {
  std::array<std::uint8_t, 64> pool{};
  const WipeAtExit wipePool(pool);
  for (auto place = letters.begin(); place != letters.end();) {
    if (!source.Fill(pool)) return LATCHKEY_PROVIDER_REFUSED;
    for (const std::uint8_t byte : pool) {
      if (byte >= kFairBytes || place == letters.end()) continue;
      *place++ = static_cast<std::uint8_t>(kLetters[byte % kLetters.size()]);
    }
  }
  return LATCHKEY_OK;
}

Outcome FillBytes(RandomSource& source, std::span<std::uint8_t> bytes) {
  return source.Fill(bytes) ? LATCHKEY_OK : LATCHKEY_PROVIDER_REFUSED;
}

// Fills the memory, or clears it after a failure.
template <class Work>
std::int32_t Fill(void* memory, std::size_t length, latchkey_failure* failure, Work work) noexcept {
  if (!Memory(memory, length).IsGood()) {
    return Call(failure, trap::kCreateRandom, [] { return Outcome(LATCHKEY_BAD_ARGUMENT); });
  }
  const std::span bytes(static_cast<std::uint8_t*>(memory), length);
  std::fill(bytes.begin(), bytes.end(), std::uint8_t{0});
  const std::int32_t status = Call(failure, trap::kCreateRandom, [&]() -> Outcome {
    RandomSource source;
    if (!source.IsOpen()) return {LATCHKEY_NO_PROVIDER, &check::kRandomProvider};
    return work(source, bytes);
  });
  if (status != LATCHKEY_OK) std::fill(bytes.begin(), bytes.end(), std::uint8_t{0});
  return status;
}

}  // namespace
}  // namespace latchkey::c

using namespace latchkey::c;  // NOLINT(google-build-using-namespace): their parts

int32_t latchkey_random_bytes(uint8_t* bytes, size_t length, latchkey_failure* failure) {
  return Fill(bytes, length, failure, FillBytes);
}

int32_t latchkey_salt(char* letters, size_t length, latchkey_failure* failure) {
  return Fill(letters, length, failure, FillLetters);
}
