#include "tests/c/client.h"

namespace latchkey::test {

Key OpenKey(const latchkey_settings& settings, std::span<const std::uint8_t> password) {
  Key key;
  latchkey_failure failure = LATCHKEY_FAILURE_INIT;
  EXPECT_EQ(latchkey_key_open(&settings, password.data(), password.size(), key.Address(), &failure),
            LATCHKEY_OK)
      << failure.text;
  EXPECT_EQ(ReasonOf(failure), Reason{});
  return key;
}

Key OpenKey(const latchkey_settings& settings, std::string_view password) {
  return OpenKey(settings, BytesOf(password));
}

Key OpenKey(std::int32_t cipher) { return OpenKey(SettingsOf(LATCHKEY_SHA1, cipher)); }

Stream OpenStream(latchkey_key* key, std::int32_t direction) {
  Stream stream;
  EXPECT_EQ(latchkey_stream_open(key, direction, stream.Address(), nullptr), LATCHKEY_OK);
  return stream;
}

Reason RefusalOf(const latchkey_settings& settings, std::string_view password) {
  latchkey_failure failure = LATCHKEY_FAILURE_INIT;
  int notAKey = 0;
  auto* key = reinterpret_cast<latchkey_key*>(&notAKey);
  const std::int32_t status =
      latchkey_key_open(&settings, reinterpret_cast<const std::uint8_t*>(password.data()),
                        password.size(), &key, &failure);
  EXPECT_EQ(failure.status, status);
  EXPECT_EQ(key == nullptr, status != LATCHKEY_OK);
  EXPECT_EQ(latchkey_key_close(key), LATCHKEY_OK);
  return ReasonOf(failure);
}

Output Encrypt(const latchkey_key* key, std::span<const std::uint8_t> input, std::size_t room) {
  return RunCall(room, [&](std::uint8_t* output, std::size_t* length, latchkey_failure* failure) {
    return latchkey_encrypt(key, input.data(), input.size(), output, length, failure);
  });
}

Output Decrypt(const latchkey_key* key, std::span<const std::uint8_t> input, std::size_t room) {
  return RunCall(room, [&](std::uint8_t* output, std::size_t* length, latchkey_failure* failure) {
    return latchkey_decrypt(key, input.data(), input.size(), output, length, failure);
  });
}

Output Update(latchkey_stream* stream, std::span<const std::uint8_t> input, std::size_t room) {
  return RunCall(room, [&](std::uint8_t* output, std::size_t* length, latchkey_failure* failure) {
    return latchkey_stream_update(stream, input.data(), input.size(), output, length, failure);
  });
}

Output Finish(latchkey_stream* stream, std::size_t room) {
  return RunCall(room, [&](std::uint8_t* output, std::size_t* length, latchkey_failure* failure) {
    return latchkey_stream_finish(stream, output, length, failure);
  });
}

Output Digest(std::int32_t hash, std::span<const std::uint8_t> input, std::size_t room) {
  return RunCall(room, [&](std::uint8_t* digest, std::size_t* length, latchkey_failure* failure) {
    return latchkey_digest(hash, input.data(), input.size(), digest, length, failure);
  });
}

Bytes Encrypted(const latchkey_key* key, std::span<const std::uint8_t> input) {
  return Encrypt(key, input, input.size() + 8).Result();
}

Bytes Decrypted(const latchkey_key* key, std::span<const std::uint8_t> input) {
  return Decrypt(key, input, input.size()).Result();
}

}  // namespace latchkey::test
