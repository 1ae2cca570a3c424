// clsCryptoAPI's CreateHash.
#include "crypto/byte_array_text.h"
#include "crypto/cls_crypto_api.h"
#include "crypto/message_digest.h"
#include "crypto/text_codec.h"
#include "diagnostics/error_trap.h"
#include "platform/large_memory.h"

namespace latchkey {
namespace {

// Hashes the text and the password behind it, and reads the digest as text bytes. False when the
// provider refuses a call. The hash is the caller's, who destroys it after everything else is
// cleaned up.
bool ReadDigest(const UniqueContext& context, provider::AlgorithmId algorithm, TextView text,
                std::span<const std::uint8_t> password, MessageDigest& hash,
                std::span<std::uint8_t> digest) {
  if (!hash.Begin(context, algorithm)) return false;
  WorkingBytes input(text.size() + password.size());
  platform::ExpectFilling(input.data(), input.size());
  EncodeText(text, input.All().first(text.size()));
  std::copy(password.begin(), password.end(), input.All().subspan(text.size()).begin());
  if (!hash.Add(input.All())) return false;
  return hash.Read(digest);
}

}  // namespace

WorkingText clsCryptoAPI::PasswordToAppend() {
  return WorkingTextOf(HasPassword() ? arPassword : BuildPassword(blnDefaultPWD));
}

Text clsCryptoAPI::CreateHash(TextView strInText, std::int16_t intHashChoice, bool blnConvertToHex,
                              bool blnAppendPassword, bool /*blnCaseSensitive*/) {
  Text result;
  MessageDigest hash;
  WorkingBytes digest;
  RunTrapped(trap::kCreateHash, [&] {
    ClearErrorRecord();
    if (!HaveProvider()) {
      RecordApplicationFailure(check::kHashProvider);
      return;
    }
    const WorkingText password = blnAppendPassword ? PasswordToAppend() : WorkingText();

    std::int32_t hashLength = 0;
    provider::AlgorithmId algorithm = provider::kAlgorithmNone;
    GetHashAlgorithm(intHashChoice, hashLength, algorithm);
    digest = WorkingBytes(static_cast<std::size_t>(hashLength));
    std::fill_n(digest.data(), digest.size(), kSpace);
    // A provider that refuses is silent: the caller sees empty text and a clear record.
    if (!ReadDigest(hCryptProv, algorithm, strInText, password.Trimmed(), hash, digest.All())) {
      return;
    }

    if (blnConvertToHex) {
      ConvertCodesToHex(digest.All(), result);
    } else {
      DecodeBytes(TrimTrailingSpaces(digest.All()), result);
    }
  });
  return result;
}

}  // namespace latchkey
