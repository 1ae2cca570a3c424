// The fixture of tests that search the process after each ending of an operation.
#pragma once

#include "tests/system/secrets/secret_search.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <limits>
#include <stdexcept>

#include "crypto/crypto_state.h"
#include "latchkey/cls_crypto_api.h"
#include "latchkey/cls_main.h"
#include "tests/support/bytes.h"
#include "tests/support/faulty_provider.h"
#include "tests/support/module_scope.h"
#include "tests/support/sweep.h"

namespace latchkey::test {

// The secrets by their index in the search.
inline constexpr std::size_t kPassword = 0;
inline constexpr std::size_t kPlaintext = 1;
inline constexpr std::size_t kResult = 2;
inline constexpr std::size_t kRandom = 3;

using Copies = SecretSearch::Copies;
inline constexpr Copies kNone{};

// Returns the test's random bytes, if it has some, and records the bytes hashed after a text.
class GivingProvider final : public FaultyProvider {
 public:
  using FaultyProvider::FaultyProvider;

  void GiveRandom(const Secret& random) noexcept { random_ = &random; }

  // The bytes after the first `length` bytes of a hash's last data since this call.
  void WatchHashedAfter(std::size_t length) {
    watchedFrom_ = length;
    hashedAfter_ = Secret();
  }
  [[nodiscard]] const Secret& HashedAfter() const noexcept { return hashedAfter_; }

  bool CryptHashData(HCRYPTHASH hHash, const std::uint8_t* pbData, std::uint32_t dwDataLen,
                     std::uint32_t dwFlags) override {
    const std::span data(pbData, dwDataLen);
    if (data.size() > watchedFrom_) hashedAfter_ = Secret(data.subspan(watchedFrom_));
    return FaultyProvider::CryptHashData(hHash, pbData, dwDataLen, dwFlags);
  }

  bool CryptGenRandom(HCRYPTPROV hProv, std::uint32_t dwLen, std::uint8_t* pbBuffer) override {
    if (!FaultyProvider::CryptGenRandom(hProv, dwLen, pbBuffer)) return false;
    if (random_ != nullptr) random_->CopyTo(std::span(pbBuffer, dwLen));
    return true;
  }

 private:
  const Secret* random_ = nullptr;
  std::size_t watchedFrom_ = std::numeric_limits<std::size_t>::max();
  Secret hashedAfter_;
};

// A service with its own secrets, and a search for them.
class SearchedService : public testing::Test {
 protected:
  SearchedService() {
    ThisThreadCrypto().provider = &provider;
    provider::ReplaceSharedCryptoProvider(&provider);
    search.Add(kPassword, password);
    search.Add(kPlaintext, plaintext);
  }
  ~SearchedService() override {
    provider::ReplaceSharedCryptoProvider(nullptr);
    std::printf("%d searches, the last of %zu bytes\n", searches, bytesSearched);
  }

  Copies Count() {
    ForgetRegisters();
    ++searches;
    const Copies copies = search.Count();
    bytesSearched = search.BytesSearched();
    return copies;
  }

  void Expect(const Copies& right, const char* moment) {
    const Copies copies = Count();
    EXPECT_EQ(copies, right) << moment;
    if (copies != right) search.PrintPlaces();
  }

  // An object with the password and with `input`, which is not kept elsewhere.
  void Prepare(clsCryptoAPI& object, const Secret& input) const {
    object.EnhancedProvider(true);
    ByteArray array = password.Array();
    object.Password(array);
    object.InputData(input.Array());
    ForgetRegisters();
  }

  // Encrypts with MD5. InputData would lose trailing spaces of the ciphertext, so the text's last
  // byte is changed to a letter whose ciphertext has none.
  [[nodiscard]] Bytes EncryptWithoutTrailingSpace(std::span<std::uint8_t> text,
                                                  std::int16_t cipher) const {
    for (char letter = 'A'; letter <= 'Z'; ++letter) {
      text.back() = static_cast<std::uint8_t>(letter);
      clsCryptoAPI object;
      Prepare(object, Secret::Random(8));
      object.InputData(ByteArray::WithTrailingZero(text));
      EXPECT_TRUE(object.Encrypt(1, cipher));
      const ByteArray output = object.OutputData();
      const auto elements = output.TextElements();
      if (elements.back() != ' ') return {elements.begin(), elements.end()};
    }
    throw std::logic_error("every ciphertext ends in a space");
  }

  // Runs an operation (which returns success) on new objects: without failures, then with each call
  // of the provider and each allocation failing. `right` are the copies allowed while the object
  // lives, by the operation's success.
  template <class Operation, class Right>
  void SearchAfterEveryEnding(const Secret& input, Operation&& operation, Right&& right) {
    Attempt(input, operation, right, "well");
    for (const auto manner : {FaultyProvider::Manner::Refuse, FaultyProvider::Manner::Throw}) {
      FailEachInTurn([&](int nth) {
        provider.FailCall(nth, manner);
        Attempt(input, operation, right, nullptr);
        const bool failed = !provider.FailurePending();
        provider.FailCall(0, manner);
        return failed;
      });
    }
    FailEachInTurn([&](int nth) {
      bool failed = false;
      const auto failing = [&](clsCryptoAPI& object) {
        bool done = false;
        failed = RunFailing(nth, [&] { done = operation(object); });
        return done;
      };
      Attempt(input, failing, right, nullptr);
      return failed;
    });
  }

  template <class Operation, class Right>
  void Attempt(const Secret& input, Operation&& operation, Right&& right, const char* mustSucceed) {
    {
      clsCryptoAPI object;
      Prepare(object, input);
      const bool done = operation(object);
      if (mustSucceed != nullptr) {
        EXPECT_TRUE(done);
      }
      Expect(right(done), "while the object lives");
    }
    Expect(kNone, "after the object's end");
  }

  ModuleScope scope;
#ifdef _WIN32
  // Data that Windows' own provider leaves in memory is not the component's.
  GivingProvider provider{nullptr};
#else
  GivingProvider provider;
#endif
  clsMain main;
  const Secret password = Secret::Random(48);
  const Secret plaintext = Secret::Random(48);
  SecretSearch search;
  int searches = 0;
  std::size_t bytesSearched = 0;
};

}  // namespace latchkey::test
