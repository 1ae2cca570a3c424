// What is left of secrets anywhere in the process after each operation, successful or not: only
// what the caller and the object hold by right.
#include "tests/secrets/secret_search.h"

#include <gtest/gtest.h>

#include <cstdio>

#include "com/cls_main.h"
#include "crypto/cls_crypto_api.h"
#include "tests/secrets/plain_provider.h"
#include "tests/support/failing_memory.h"
#include "tests/support/faulty_provider.h"
#include "tests/support/module_scope.h"

namespace latchkey::test {
namespace {

enum SecretIndex : std::size_t { kPassword, kPlaintext, kResult, kRandom };

using Copies = SecretSearch::Copies;
constexpr Copies kNone{};

#ifdef _WIN32
// The provider of the test takes every number for the same cipher and hash.
constexpr std::int16_t kCiphers = 1;
constexpr std::int16_t kHashes = 1;
#else
constexpr std::int16_t kCiphers = 5;
constexpr std::int16_t kHashes = 4;
#endif

// Gives random bytes of the test's, when it has some.
class GivingProvider final : public FaultyProvider {
 public:
  using FaultyProvider::FaultyProvider;

  void GiveRandom(const Secret& random) noexcept { random_ = &random; }

  bool CryptGenRandom(HCRYPTPROV hProv, std::uint32_t dwLen, std::uint8_t* pbBuffer) override {
    if (!FaultyProvider::CryptGenRandom(hProv, dwLen, pbBuffer)) return false;
    if (random_ != nullptr) random_->CopyTo(std::span(pbBuffer, dwLen));
    return true;
  }

 private:
  const Secret* random_ = nullptr;
};

class SecretSearchTest : public testing::Test {
 protected:
  SecretSearchTest() {
    scope.Services().provider = &provider;
    search.Add(kPassword, password);
    search.Add(kPlaintext, plaintext);
  }
  ~SecretSearchTest() override {
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

  // Runs an operation (true when it succeeded) on new objects: well, then with each call of the
  // provider and each allocation failing. `right` is what may be found while the object lives,
  // by whether the operation succeeded.
  template <class Operation, class Right>
  void SearchAfterEveryEnding(const Secret& input, Operation&& operation, Right&& right) {
    Attempt(input, operation, right, "well");
    for (const auto manner : {FaultyProvider::Manner::Refuse, FaultyProvider::Manner::Throw}) {
      int nth = 0;
      do {
        provider.FailCall(++nth, manner);
        SCOPED_TRACE("provider call " + std::to_string(nth));
        Attempt(input, operation, right, nullptr);
        ASSERT_LT(nth, 100);
      } while (!provider.FailurePending());
      provider.FailCall(0, manner);
    }
    int nth = 0;
    bool pending = false;
    do {
      SCOPED_TRACE("allocation " + std::to_string(++nth));
      Attempt(
          input,
          [&](clsCryptoAPI& object) {
            FailAllocation(nth);
            const bool done = operation(object);
            pending = AllocationFailurePending();
            FailAllocation(0);
            return done;
          },
          right, nullptr);
      ASSERT_LT(nth, 100);
    } while (!pending);
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
  // Windows' own provider is not the component's, nor is what it leaves in memory.
  PlainProvider plain;
  GivingProvider provider{plain};
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

TEST_F(SecretSearchTest, AfterEncryptTheObjectHasPasswordAndInput) {
  for (std::int16_t cipher = 1; cipher <= kCiphers; ++cipher) {
    for (std::int16_t hash = 1; hash <= kHashes; ++hash) {
      SCOPED_TRACE("hash " + std::to_string(hash) + ", cipher " + std::to_string(cipher));
      const auto run = [=](clsCryptoAPI& object) { return object.Encrypt(hash, cipher); };
      const auto right = [](bool) { return Copies{1, 1}; };
      if (hash == 1 || cipher == 2) {
        SearchAfterEveryEnding(plaintext, run, right);
      } else {
        Attempt(plaintext, run, right, "well");
      }
    }
  }
}

TEST_F(SecretSearchTest, AfterDecryptTheObjectHasPasswordAndOutput) {
  for (std::int16_t cipher = 1; cipher <= kCiphers; ++cipher) {
    SCOPED_TRACE("cipher " + std::to_string(cipher));
    const Secret ciphertext = [&] {
      clsCryptoAPI object;
      Prepare(object, plaintext);
      EXPECT_TRUE(object.Encrypt(1, cipher));
      return Secret(object.OutputData().TextElements());
    }();
    SearchAfterEveryEnding(
        ciphertext, [=](clsCryptoAPI& object) { return object.Decrypt(1, cipher); },
        [](bool done) {
          return Copies{1, done ? 1 : 0};
        });
  }
}

TEST_F(SecretSearchTest, AfterCreateHashNeitherTextNorPasswordNorDigestIsLeft) {
  for (std::int16_t hash = 1; hash <= kHashes; ++hash) {
    for (const bool hexadecimal : {false, true}) {
      SCOPED_TRACE("hash " + std::to_string(hash));
      const Secret other = Secret::Random(16);
      const auto run = [&](clsCryptoAPI& object) {
        try {
          const WipedText text = plaintext.Characters();
          Text digest = object.CreateHash({text.data(), text.size()}, hash, hexadecimal, true);
          const platform::WipeAtExit wipeDigest(digest);
          return !digest.empty();
        } catch (const std::bad_alloc&) {
          return false;  // the caller's own text
        }
      };
      // The digest is known from a first run, and searched for in all that follow.
      const Secret digest = [&] {
        clsCryptoAPI object;
        Prepare(object, other);
        const WipedText text = plaintext.Characters();
        Text result = object.CreateHash({text.data(), text.size()}, hash, hexadecimal, true);
        const platform::WipeAtExit wipeResult(result);
        return Secret(result);
      }();
      SecretSearch all = search;
      search.Add(kResult, digest);
      EXPECT_EQ(Count(), kNone);
      SearchAfterEveryEnding(other, run, [](bool) { return Copies{1}; });
      search = all;
    }
  }
}

// Random data is known when the provider gives it, and then searched for.
TEST_F(SecretSearchTest, AfterRandomDataNothingOfItIsLeft) {
  const Secret other = Secret::Random(16);
  for (const bool salt : {false, true}) {
    const auto run = [&](clsCryptoAPI& object) {
      Text text = salt ? object.CreateSaltValue(48) : object.CreateRandom(48, true);
      const platform::WipeAtExit wipeText(text);
      return !text.empty();
    };
    const Secret random = Secret::Random(48);
    provider.GiveRandom(random);
    const SecretSearch without = search;
    search.Add(kRandom, random);
    SearchAfterEveryEnding(other, run, [](bool) { return Copies{1}; });
    search = without;
  }
}

// The letters of a salt come from the system; each salt is searched for once it is known.
TEST_F(SecretSearchTest, AfterASaltOfLettersNothingOfItIsLeft) {
  for (int round = 0; round < 3; ++round) {
    clsCryptoAPI object;
    const Secret letters = [&] {
      Text text = object.CreateSaltValue(48, true);
      const platform::WipeAtExit wipeText(text);
      return Secret(text);
    }();
    ASSERT_EQ(letters.Size(), 48U);
    const SecretSearch without = search;
    search.Add(kRandom, letters);
    Expect(kNone, "after a salt of letters");
    search = without;
  }
}

}  // namespace
}  // namespace latchkey::test
