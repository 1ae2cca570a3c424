// After each operation, successful or not, the process contains only those copies of secrets that
// the caller and the object hold by right.
#include "tests/system/secrets/known_results.h"
#include "tests/system/secrets/searched_service.h"

namespace latchkey::test {
namespace {

#ifdef _WIN32
// The provider of the test uses the same cipher and hash for every number.
constexpr std::int16_t kCiphers = 1;
constexpr std::int16_t kHashes = 1;
#else
constexpr std::int16_t kCiphers = 5;
constexpr std::int16_t kHashes = 4;
#endif

class SecretSearchTest : public SearchedService {
 protected:
  // Keys are derived from the digest of the password.
  void AddDigestsOfPassword() {
    for (std::int16_t hash = 1; hash <= kHashes; ++hash) {
      search.Add(kResult, DigestOf(hash, password));
    }
  }
};

TEST_F(SecretSearchTest, AfterEncryptTheObjectHasPasswordAndInput) {
  AddDigestsOfPassword();
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
  AddDigestsOfPassword();
  for (std::int16_t cipher = 1; cipher <= kCiphers; ++cipher) {
    SCOPED_TRACE("cipher " + std::to_string(cipher));
    const Secret ciphertext = [&] {
      WipedBytes text = plaintext.Bytes();
      const Bytes bytes = EncryptWithoutTrailingSpace(text, cipher);
      search.Add(kPlaintext, Secret(text));
      return Secret(bytes);
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
          const WipeAtExit wipeDigest(digest);
          return !digest.empty();
        } catch (const std::bad_alloc&) {
          return false;  // the caller's own text
        }
      };
      // The digest is known from a first run, and searched for in all later ones.
      const Secret digest = [&] {
        clsCryptoAPI object;
        Prepare(object, other);
        const WipedText text = plaintext.Characters();
        Text result = object.CreateHash({text.data(), text.size()}, hash, false, true);
        const WipeAtExit wipeResult(result);
        return Secret(result);
      }();
      SecretSearch all = search;
      search.Add(kResult, digest);
      search.Add(kRandom, DigitsOf(digest));
      EXPECT_EQ(Count(), kNone);
      SearchAfterEveryEnding(other, run, [](bool) { return Copies{1}; });
      search = all;
    }
  }
}

// Without a password and with UseDefaultPWD False, an object uses 20 random letters, which only the
// provider that hashes them knows. They are searched for after every later ending.
class RandomPasswordSearchTest : public SecretSearchTest {
 protected:
  void Hash() {
    provider.WatchHashedAfter(plaintext.Size());
    try {
      clsCryptoAPI object;
      object.UseDefaultPWD(false);
      const WipedText text = plaintext.Characters();
      Text digest = object.CreateHash({text.data(), text.size()}, 1, false, true);
      const WipeAtExit wipeDigest(digest);
    } catch (const std::bad_alloc&) {
      return;  // the caller's own text
    }
  }

  void SearchForLetters() {
    const Secret letters = provider.HashedAfter();
    if (letters.Size() == 0) return;
    ++endings;
    const SecretSearch without = search;
    search.Add(kRandom, letters, SecretSearch::kLongPart);
    Expect(kNone, "after the object's end");
    search = without;
  }

  int endings = 0;
};

TEST_F(RandomPasswordSearchTest, AfterCreateHashNothingOfItIsLeft) {
  for (const auto manner : {FaultyProvider::Manner::Refuse, FaultyProvider::Manner::Throw}) {
    int nth = 0;
    do {
      provider.FailCall(++nth, manner);
      Hash();
      SearchForLetters();
    } while (!provider.FailurePending());
    provider.FailCall(0, manner);
  }
  int nth = 0;
  bool pending = false;
  do {
    FailAllocation(++nth);
    Hash();
    pending = AllocationFailurePending();
    FailAllocation(0);
    SearchForLetters();
  } while (!pending);
  EXPECT_GT(endings, 5);
}

// Random data is known when the provider returns it, and then searched for.
TEST_F(SecretSearchTest, AfterRandomDataNothingOfItIsLeft) {
  const Secret other = Secret::Random(16);
  for (const bool salt : {false, true}) {
    const auto run = [&](clsCryptoAPI& object) {
      Text text = salt ? object.CreateSaltValue(48) : object.CreateRandom(48, true);
      const WipeAtExit wipeText(text);
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

// The letters of a salt are random; each salt is searched for once it is known, after it was made
// successfully.
TEST_F(SecretSearchTest, AfterASaltOfLettersNothingOfItIsLeft) {
  for (int round = 0; round < 3; ++round) {
    clsCryptoAPI object;
    const Secret letters = [&] {
      Text text = object.CreateSaltValue(48, true);
      const WipeAtExit wipeText(text);
      return Secret(text);
    }();
    ASSERT_EQ(letters.Size(), 48U);
    const SecretSearch without = search;
    search.Add(kRandom, letters, SecretSearch::kLongPart);
    Expect(kNone, "after a salt of letters");
    search = without;
  }
}

}  // namespace
}  // namespace latchkey::test
