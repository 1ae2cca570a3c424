#include "tests/c/functions.h"

#include <memory>

#include "tests/c/client.h"

namespace latchkey::test {
namespace {

constexpr const char* kMessage = "a message of more than sixteen bytes";
constexpr const char* kPassword = "a password of more than sixteen bytes";

// The arguments of the functions, made before the condition that the functions run under.
struct Subject {
  explicit Subject(std::int32_t cipher)
      : settings(SettingsOf(LATCHKEY_SHA1, cipher, LATCHKEY_ENHANCED, 0,
                            cipher == LATCHKEY_RC2 ? 40 : 0)),
        key(OpenKey(settings, kPassword)),
        ciphertext(Encrypted(key, message)) {
    for (int i = 0; i < 3; ++i) plain.Add(message), secret.Add(ciphertext);
  }

  latchkey_settings settings;
  Bytes password = BytesOf(kPassword);
  Bytes message = BytesOf(kMessage);
  Key key;
  Bytes ciphertext;
  Column<std::int64_t> plain;
  Column<std::int64_t> secret;
};

using Shared = std::shared_ptr<Subject>;

// A call with an output buffer. It allocates nothing itself: allocations are counted.
template <class Call>
std::int32_t IntoBuffer(std::span<const std::uint8_t> expected, Call&& call) {
  std::uint8_t buffer[256];
  std::fill(std::begin(buffer), std::end(buffer), kGuard);
  std::size_t length = sizeof buffer;
  const std::int32_t status = call(buffer, &length);
  if (status == LATCHKEY_OK) {
    EXPECT_TRUE(std::ranges::equal(std::span(buffer).first(length), expected));
  } else {
    EXPECT_EQ(length, 0U);
    EXPECT_TRUE(std::ranges::all_of(buffer, [](auto byte) { return byte == kGuard || byte == 0; }));
  }
  return status;
}

std::int32_t OpenAndCloseKey(const Subject& subject, latchkey_failure* failure) {
  Key key;
  const std::int32_t status = latchkey_key_open(&subject.settings, subject.password.data(),
                                                subject.password.size(), key.Address(), failure);
  EXPECT_EQ(key == nullptr, status != LATCHKEY_OK);
  return status;
}

// A whole message; after a failure the stream refuses everything.
std::int32_t UseStream(const Subject& subject, std::int32_t direction, latchkey_failure* failure) {
  const bool encrypts = direction == LATCHKEY_ENCRYPT;
  const Bytes& input = encrypts ? subject.message : subject.ciphertext;
  const Bytes& expected = encrypts ? subject.ciphertext : subject.message;
  Stream stream;
  std::int32_t status = latchkey_stream_open(subject.key, direction, stream.Address(), failure);
  EXPECT_EQ(stream == nullptr, status != LATCHKEY_OK);
  if (stream == nullptr) return status;
  // A block cipher holds the last, unfilled block of a plaintext back, or that of a ciphertext.
  const bool holdsBack = subject.settings.cipher != LATCHKEY_RC4;
  std::size_t begun = 0;
  status = IntoBuffer(std::span(expected).first(holdsBack ? subject.message.size() / 8 * 8
                                                          : subject.message.size()),
                      [&](std::uint8_t* buffer, std::size_t* length) {
                        const std::int32_t result = latchkey_stream_update(
                            stream, input.data(), input.size(), buffer, length, failure);
                        begun = *length;
                        return result;
                      });
  if (status == LATCHKEY_OK) {
    status = IntoBuffer(std::span(expected).subspan(begun),
                        [&](std::uint8_t* buffer, std::size_t* length) {
                          return latchkey_stream_finish(stream, buffer, length, failure);
                        });
  }
  if (status != LATCHKEY_OK) {
    IntoBuffer({}, [&](std::uint8_t* buffer, std::size_t* length) {
      const std::int32_t later = latchkey_stream_finish(stream, buffer, length, nullptr);
      EXPECT_EQ(later, LATCHKEY_CIPHER_FAILED) << "a stream that failed";
      return later;
    });
  }
  return status;
}

std::int32_t UseHash(const Subject& subject, latchkey_failure* failure) {
  Hash hash;
  std::int32_t status = latchkey_hash_open(LATCHKEY_MD5, hash.Address(), failure);
  EXPECT_EQ(hash == nullptr, status != LATCHKEY_OK);
  for (int i = 0; status == LATCHKEY_OK && i < 2; ++i) {
    status = latchkey_hash_update(hash, subject.message.data(), subject.message.size(), failure);
  }
  std::uint8_t digest[16];
  std::size_t length = sizeof digest;
  if (status == LATCHKEY_OK) status = latchkey_hash_finish(hash, digest, &length, failure);
  if (status != LATCHKEY_OK && hash != nullptr) {
    latchkey_hash_update(hash, subject.message.data(), 1, nullptr);  // safe after a failure
    latchkey_hash_finish(hash, digest, &length, nullptr);
  }
  return status;
}

std::int32_t UseRecords(const Subject& subject, std::int32_t direction, latchkey_failure* failure) {
  const bool encrypts = direction == LATCHKEY_ENCRYPT;
  const latchkey_records records = encrypts ? subject.plain.View() : subject.secret.View();
  std::int64_t offsets[4] = {};
  std::int32_t statuses[3] = {};
  std::uint8_t data[256];
  std::fill(std::begin(data), std::end(data), kGuard);
  latchkey_results results = LATCHKEY_RESULTS_INIT;
  results.offsets = offsets;
  results.statuses = statuses;
  results.data = data;
  results.data_length = sizeof data;
  latchkey_failure own = LATCHKEY_FAILURE_INIT;
  latchkey_failure* const seen = failure != nullptr ? failure : &own;
  const std::int32_t status = (encrypts ? latchkey_encrypt_records : latchkey_decrypt_records)(
      subject.key, &records, 1, &results, seen);
  const Bytes& expected = encrypts ? subject.ciphertext : subject.message;
  if (status != LATCHKEY_OK) {
    EXPECT_TRUE(std::ranges::all_of(data, [](auto byte) { return byte == kGuard || byte == 0; }));
    return status;
  }
  EXPECT_EQ(seen->status == LATCHKEY_OK, results.failed == 0);
  for (std::size_t i = 0; i < 3; ++i) {
    const auto one = std::span(data).subspan(static_cast<std::size_t>(offsets[i]),
                                             static_cast<std::size_t>(offsets[i + 1] - offsets[i]));
    EXPECT_TRUE(statuses[i] == LATCHKEY_OK ? std::ranges::equal(one, expected) : one.empty());
  }
  return seen->status;  // of a record that failed
}

std::int32_t Identify(const Subject& subject, latchkey_failure* failure) {
  const latchkey_records records = subject.secret.View();
  latchkey_candidate candidates[64] = {};
  std::size_t count = 64;
  const std::int32_t status =
      latchkey_identify(&records, subject.password.data(), subject.password.size(),
                        sizeof candidates[0], candidates, &count, failure);
  EXPECT_TRUE(status == LATCHKEY_OK || count == 0);
  return status;
}

std::int32_t FillRandom(latchkey_failure* failure) {
  std::uint8_t bytes[64];
  std::fill(std::begin(bytes), std::end(bytes), kGuard);
  const std::int32_t status = latchkey_random_bytes(bytes, sizeof bytes, failure);
  EXPECT_EQ(std::ranges::count(bytes, 0) == sizeof bytes, status != LATCHKEY_OK);
  return status;
}

std::int32_t FillSalt(latchkey_failure* failure) {
  char letters[200];
  std::fill(std::begin(letters), std::end(letters), '?');
  const std::int32_t status = latchkey_salt(letters, sizeof letters, failure);
  EXPECT_EQ(std::ranges::count(letters, '\0'), status == LATCHKEY_OK ? 0 : 200);
  return status;
}

std::vector<CFunction> FunctionsOf(const Shared& subject) {
  const Bytes digest = Digest(LATCHKEY_SHA1, subject->message).Result();
  Bytes digits = BytesOf(Hex(subject->message));
  digits.push_back(0);
  const auto& in = *subject;
  return {
      {"key_open", [subject](auto* failure) { return OpenAndCloseKey(*subject, failure); }},
      {"encrypt",
       [subject, &in](auto* failure) {
         return IntoBuffer(in.ciphertext, [&](auto* output, auto* length) {
           return latchkey_encrypt(in.key, in.message.data(), in.message.size(), output, length,
                                   failure);
         });
       }},
      {"decrypt",
       [subject, &in](auto* failure) {
         return IntoBuffer(in.message, [&](auto* output, auto* length) {
           return latchkey_decrypt(in.key, in.ciphertext.data(), in.ciphertext.size(), output,
                                   length, failure);
         });
       }},
      {"decrypt into a small room",
       [subject, &in](auto* failure) {
         return IntoBuffer(in.message, [&](auto* output, auto* length) {
           *length = in.message.size();
           return latchkey_decrypt(in.key, in.ciphertext.data(), in.ciphertext.size(), output,
                                   length, failure);
         });
       }},
      {"stream, encrypting",
       [subject](auto* failure) { return UseStream(*subject, LATCHKEY_ENCRYPT, failure); }},
      {"stream, decrypting",
       [subject](auto* failure) { return UseStream(*subject, LATCHKEY_DECRYPT, failure); }},
      {"encrypt_records",
       [subject](auto* failure) { return UseRecords(*subject, LATCHKEY_ENCRYPT, failure); }},
      {"decrypt_records",
       [subject](auto* failure) { return UseRecords(*subject, LATCHKEY_DECRYPT, failure); }},
      {"identify", [subject](auto* failure) { return Identify(*subject, failure); }},
      {"digest",
       [subject, &in, digest](auto* failure) {
         return IntoBuffer(digest, [&](auto* output, auto* length) {
           return latchkey_digest(LATCHKEY_SHA1, in.message.data(), in.message.size(), output,
                                  length, failure);
         });
       }},
      {"hash", [subject](auto* failure) { return UseHash(*subject, failure); }},
      {"random_bytes", FillRandom},
      {"salt", FillSalt},
      {"hex_encode",
       [subject, &in, digits](auto* failure) {
         return IntoBuffer(digits, [&](auto* output, auto* length) {
           return latchkey_hex_encode(in.message.data(), in.message.size(),
                                      reinterpret_cast<char*>(output), length, failure);
         });
       }},
      {"hex_decode",
       [subject, &in, digits](auto* failure) {
         return IntoBuffer(in.message, [&](auto* output, auto* length) {
           return latchkey_hex_decode(reinterpret_cast<const char*>(digits.data()),
                                      digits.size() - 1, output, length, failure);
         });
       }},
  };
}

}  // namespace

std::vector<CFunction> AllCFunctions(std::int32_t cipher) {
  return FunctionsOf(std::make_shared<Subject>(cipher));
}

}  // namespace latchkey::test
