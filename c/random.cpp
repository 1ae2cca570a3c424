// The C interface: random data.
#include <algorithm>
#include <array>
#include <string_view>

#include "base/secure_memory.h"
#include "c/call.h"
#include "crypto/engine/provider_random.h"

namespace latchkey::c {
namespace {

constexpr std::string_view kLetters = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";
// Bytes below this number map to each letter equally often; other bytes are dropped.
constexpr std::size_t kFairBytes = 256 - 256 % kLetters.size();

Outcome FillLetters(ProviderRandom& source, std::span<std::uint8_t> letters) {
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

Outcome FillBytes(ProviderRandom& source, std::span<std::uint8_t> bytes) {
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
    ProviderRandom source;
    if (!source.IsOpen()) return {LATCHKEY_NO_PROVIDER, &check::kRandomProvider};
    return work(source, bytes);
  });
  if (status != LATCHKEY_OK) SecureWipe(bytes.data(), bytes.size());
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
