// A client of the C interface that checks its outputs.
#pragma once

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <span>

#include "latchkey.h"
#include "tests/support/bytes.h"

namespace latchkey::test {

// Has a cryptographic handle, and calls each function with valid arguments. Each call returns the
// function's status. Fails the test if a failed call leaves anything in its outputs that the header
// does not promise.
class CClient {
 public:
  CClient();
  CClient(const CClient&) = delete;
  CClient& operator=(const CClient&) = delete;
  ~CClient();

  // Closes the handle before the client's end.
  int Close();

  int Encrypt(const latchkey_key& key, std::span<const std::uint8_t> input);
  int Decrypt(const latchkey_key& key, std::span<const std::uint8_t> input);
  int Hash(std::int32_t hash, std::span<const std::uint8_t> input);
  int RandomBytes();
  int CreateRandom();
  int CreateSalt(std::uint32_t flags, std::int32_t length = kRandomLength);
  int EncodeHex(std::span<const std::uint8_t> input);
  int DecodeHex(std::string_view text);
  int DescribeFailure(const latchkey_thread* thread);
  int DescribeFault(const latchkey_thread* thread);

  // The bytes that the last call with a buffer wrote.
  [[nodiscard]] Bytes Result() const { return {output_.begin(), output_.begin() + length_}; }

  // Opens a handle of one kind and closes it.
  static int OpenThread();
  static int OpenCrypto();
  static int OpenTimer();

 private:
  static constexpr std::uint8_t kUntouched = 0x55;
  static constexpr std::size_t kRandomLength = 40;

  template <class Call>
  int WithBuffer(Call&& call);

  latchkey_crypto* crypto_ = nullptr;
  std::array<std::uint8_t, 2048> output_{};
  std::size_t length_ = 0;
};

}  // namespace latchkey::test
