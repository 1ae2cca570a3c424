// clsCryptoAPI's CreateRandom and CreateSaltValue.
#include <algorithm>

#include "base/checked_arithmetic.h"
#include "crypto/crypto_api_state.h"
#include "crypto/random_number.h"
#include "crypto/seed/seed_text.h"
#include "crypto/text_codec.h"
#include "diagnostics/error_trap.h"

namespace latchkey {
namespace {

constexpr float kFirstLetter = 'A';
constexpr float kLastLetter = 'z';
// Salts shorter than this get a buffer of twice their length.
constexpr std::int32_t kLongSalt = 10'000;

// Checks the length of a text of spaces; raises InvalidProcedureCall for a negative one.
std::size_t SpaceCount(std::int32_t length) {
  if (length < 0) throw Fault(FaultNumber::InvalidProcedureCall);
  return static_cast<std::size_t>(length);
}

// The seed text followed by `length` spaces.
WipedBytes SeededBuffer(std::int32_t length) {
  Text seed = BuildSeedText();
  const WipeAtExit wipeSeed(seed);
  WipedBytes buffer(seed.size() + SpaceCount(length), kSpace);
  const WipedBytes codes = EncodeText(seed);
  std::copy(codes.begin(), codes.end(), buffer.begin());
  return buffer;
}

// A random letter. Draws a code from A to z; the six between Z and a become d to i.
std::uint8_t RandomLetter() {
  auto code = static_cast<std::int16_t>(RandomNumberInRange(kFirstLetter, kLastLetter));
  if (code >= 91 && code <= 96) code = static_cast<std::int16_t>(code + 9);
  return static_cast<std::uint8_t>(code);
}

WipedBytes RandomLetters(std::int32_t count) {
  WipedBytes letters;
  letters.reserve(static_cast<std::size_t>(std::min(count, kLongSalt)));
  for (std::int32_t i = 0; i < count; ++i) letters.push_back(RandomLetter());
  return letters;
}

// Keeps the first `length` characters and wipes the others.
void CutText(Text& text, std::size_t length) {
  if (text.size() <= length) return;
  SecureWipe(text.data() + length, (text.size() - length) * sizeof(text[0]));
  text.resize(length);
}

// Raises a fault for lengths for which no buffer can be made.
void CheckSaltLength(std::int32_t length) {
  if (length < kLongSalt) static_cast<void>(SpaceCount(CheckedMultiply(length, 2)));
}

}  // namespace

Text clsCryptoAPI::CreateRandom(std::int32_t lngDataLength, bool blnRetExactLength,
                                bool blnConvertToHex, bool /*blnUseUppercase*/) {
  Text result;
  RunTrapped(trap::kCreateRandom, [&] {
    ClearErrorRecord();
    if (!state_->HaveProvider()) return RecordApplicationFailure(check::kRandomProvider);

    WipedBytes buffer = SeededBuffer(lngDataLength);
    const auto& [provider, handle] = state_->hCryptProv.Get();
    const bool filled =
        provider->CryptGenRandom(handle, static_cast<std::uint32_t>(lngDataLength), buffer.data());
    // A refusal of the provider is not recorded: the caller gets empty text and a clear record.
    if (!filled) return;

    const auto random = TrimSpaces(buffer);
    const auto exactLength = static_cast<std::size_t>(lngDataLength);
    if (blnConvertToHex) {
      CryptoApiState::ConvertCodesToHex(random, result);
      if (blnRetExactLength) CutText(result, exactLength);
    } else {
      DecodeBytes(blnRetExactLength ? random.first(std::min(random.size(), exactLength)) : random,
                  result);
    }
  });
  return result;
}

Text clsCryptoAPI::CreateSaltValue(std::int32_t lngReturnLength, bool blnLetttersOnly) {
  Text result;
  RunTrapped(trap::kCreateSaltValue, [&] {
    ClearErrorRecord();
    CheckSaltLength(lngReturnLength);
    if (blnLetttersOnly) {
      DecodeBytes(RandomLetters(lngReturnLength), result);
    } else {
      Text random = CreateRandom(lngReturnLength, true, false, true);
      const WipeAtExit wipeRandom(random);
      const auto trimmed = TrimSpaces(random);
      result.assign(trimmed.data(), trimmed.size());
    }
  });
  return result;
}

}  // namespace latchkey
