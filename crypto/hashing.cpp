// clsCryptoAPI's CreateHash.
#include "crypto/byte_array_text.h"
#include "crypto/crypto_api_state.h"
#include "crypto/default_password.h"
#include "crypto/message_digest.h"
#include "crypto/text_codec.h"
#include "diagnostics/error_trap.h"
#include "platform/large_memory.h"

namespace latchkey {
namespace {

constexpr std::int32_t kRandomPasswordLength = 20;

// Hashes the text followed by the password, and reads the digest as text bytes. Returns false if
// the provider refuses a call. The caller owns the hash and destroys it after all other clean-up.
bool ReadDigest(const UniqueContext& context, provider::AlgorithmId algorithm, TextView text,
                std::span<const std::uint8_t> password, MessageDigest& hash,
                std::span<std::uint8_t> digest) {
  if (!hash.Begin(context, algorithm)) return false;
  InlineBytes input(text.size() + password.size());
  platform::ExpectFilling(input.data(), input.size());
  EncodeText(text, input.All().first(text.size()));
  std::copy(password.begin(), password.end(), input.All().subspan(text.size()).begin());
  if (!hash.Add(input.All())) return false;
  return hash.Read(digest);
}

ShapedBytes RandomPassword(clsCryptoAPI& object) {
  Text letters = object.CreateSaltValue(kRandomPasswordLength, true);
  const WipeAtExit wipeLetters(letters);
  return ArrayOfText(letters);
}

}  // namespace

InlineBytes CryptoApiState::PasswordToAppend(clsCryptoAPI& object) const {
  if (HasPassword()) return InlineBytes(TextBytesOf(arPassword.TextElements()));
  const ShapedBytes password = blnDefaultPWD ? DefaultPassword() : RandomPassword(object);
  return InlineBytes(TextBytesOf(password.TextElements()));
}

Text clsCryptoAPI::CreateHash(TextView strInText, std::int16_t intHashChoice, bool blnConvertToHex,
                              bool blnAppendPassword, bool /*blnCaseSensitive*/) {
  Text result;
  MessageDigest hash;
  InlineBytes digest;
  RunTrapped(trap::kCreateHash, [&] {
    ClearErrorRecord();
    if (!state_->HaveProvider()) {
      RecordApplicationFailure(check::kHashProvider);
      return;
    }
    const InlineBytes password =
        blnAppendPassword ? state_->PasswordToAppend(*this) : InlineBytes();

    std::int32_t hashLength = 0;
    provider::AlgorithmId algorithm = provider::kAlgorithmNone;
    CryptoApiState::GetHashAlgorithm(intHashChoice, hashLength, algorithm);
    digest = InlineBytes(static_cast<std::size_t>(hashLength));
    std::fill_n(digest.data(), digest.size(), kSpace);
    // A refusal of the provider is not recorded: the caller gets empty text and a clear record.
    if (!ReadDigest(state_->hCryptProv, algorithm, strInText, password.All(), hash, digest.All())) {
      return;
    }

    if (blnConvertToHex) {
      CryptoApiState::ConvertCodesToHex(digest.All(), result);
    } else {
      DecodeBytes(TrimTrailingSpaces(digest.All()), result);
    }
  });
  return result;
}

}  // namespace latchkey
