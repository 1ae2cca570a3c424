#include "tests/support/c_client.h"

#include <algorithm>
#include <utility>

namespace latchkey::test {
namespace {

template <class Handle>
int OpenAndClose(int (*open)(Handle**), int (*close)(Handle*)) {
  int other = 0;
  auto* handle = reinterpret_cast<Handle*>(&other);
  const int status = open(&handle);
  EXPECT_EQ(handle == nullptr, status != LATCHKEY_OK);
  EXPECT_EQ(close(handle), LATCHKEY_OK);
  return status;
}

}  // namespace

CClient::CClient() { EXPECT_EQ(latchkey_crypto_open(&crypto_), LATCHKEY_OK); }

CClient::~CClient() { EXPECT_EQ(Close(), LATCHKEY_OK); }

int CClient::Close() { return latchkey_crypto_close(std::exchange(crypto_, nullptr)); }

template <class Call>
int CClient::WithBuffer(Call&& call) {
  output_.fill(kUntouched);
  length_ = output_.size();
  const int status = std::forward<Call>(call)();
  if (status == LATCHKEY_OK) return status;
  EXPECT_EQ(length_, 0U);
  EXPECT_EQ(std::count(output_.begin(), output_.end(), kUntouched), std::ssize(output_));
  return status;
}

int CClient::Encrypt(const latchkey_key& key, std::span<const std::uint8_t> input) {
  return WithBuffer([&] {
    return latchkey_encrypt(crypto_, &key, input.data(), input.size(), output_.data(), &length_);
  });
}

int CClient::Decrypt(const latchkey_key& key, std::span<const std::uint8_t> input) {
  return WithBuffer([&] {
    return latchkey_decrypt(crypto_, &key, input.data(), input.size(), output_.data(), &length_);
  });
}

int CClient::Hash(std::int32_t hash, std::span<const std::uint8_t> input) {
  return WithBuffer([&] {
    return latchkey_hash(crypto_, hash, input.data(), input.size(), output_.data(), &length_);
  });
}

int CClient::RandomBytes() {
  output_.fill(kUntouched);
  length_ = 0;
  const int status = latchkey_random_bytes(crypto_, output_.data(), kRandomLength);
  if (status != LATCHKEY_OK) {
    const auto bytes = std::span(output_).first(kRandomLength);
    EXPECT_EQ(std::count(bytes.begin(), bytes.end(), 0), std::ssize(bytes));
  }
  return status;
}

int CClient::CreateRandom() {
  return WithBuffer([&] {
    return latchkey_create_random(crypto_, LATCHKEY_AS_HEX, kRandomLength, output_.data(),
                                  &length_);
  });
}

int CClient::CreateSalt(std::uint32_t flags, std::int32_t length) {
  return WithBuffer(
      [&] { return latchkey_create_salt(crypto_, flags, length, output_.data(), &length_); });
}

int CClient::EncodeHex(std::span<const std::uint8_t> input) {
  return WithBuffer([&] {
    return latchkey_hex_encode(input.data(), input.size(), reinterpret_cast<char*>(output_.data()),
                               &length_);
  });
}

int CClient::DecodeHex(std::string_view text) {
  return WithBuffer(
      [&] { return latchkey_hex_decode(text.data(), text.size(), output_.data(), &length_); });
}

int CClient::DescribeFailure(const latchkey_thread* thread) {
  return WithBuffer([&] {
    return latchkey_error_app_description(thread, reinterpret_cast<char*>(output_.data()),
                                          &length_);
  });
}

int CClient::DescribeFault(const latchkey_thread* thread) {
  return WithBuffer([&] {
    return latchkey_error_rt_description(thread, reinterpret_cast<char*>(output_.data()), &length_);
  });
}

int CClient::OpenThread() { return OpenAndClose(latchkey_thread_open, latchkey_thread_close); }

int CClient::OpenCrypto() { return OpenAndClose(latchkey_crypto_open, latchkey_crypto_close); }

int CClient::OpenTimer() { return OpenAndClose(latchkey_timer_open, latchkey_timer_close); }

}  // namespace latchkey::test
