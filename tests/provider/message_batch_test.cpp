// Many messages of a shared key in one call.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <memory>
#include <thread>
#include <vector>

#include "tests/support/bytes.h"
#include "tests/support/faulty_provider.h"
#include "tests/support/freed_memory.h"
#include "tests/support/provider_session.h"
#include "tests/support/random_bytes.h"
#include "tests/support/sweep.h"

namespace latchkey::test {
namespace {

using namespace provider;  // NOLINT: the provider's names, as in the seam

constexpr std::array kCiphers{kAlgorithmRc4, kAlgorithmRc2, kAlgorithmDes, kAlgorithm3Des,
                              kAlgorithm3Des112};
constexpr std::size_t kAround = 40;  // bytes that must not change, before and after the results

struct Outcome {
  Bytes results;
  std::vector<std::uint32_t> lengths;
  std::vector<bool> failed;
  bool allocationFailed = false;

  friend bool operator==(const Outcome& left, const Outcome& right) {
    return left.results == right.results && left.lengths == right.lengths &&
           left.failed == right.failed;
  }
};

class MessageBatchTest : public testing::TestWithParam<AlgorithmId> {
 protected:
  [[nodiscard]] bool HasPadding() const { return GetParam() != kAlgorithmRc4; }
  [[nodiscard]] std::uint32_t RoomFor(std::uint32_t length, bool encrypts) const {
    return encrypts && HasPadding() ? length / 8 * 8 + 8 : length;
  }

  // Transforms each message in a separate call.
  [[nodiscard]] Outcome OneByOne(const MessageKey& used, const std::vector<Bytes>& messages,
                                 bool encrypts) const {
    Outcome outcome;
    for (Bytes message : messages) {
      auto length = static_cast<std::uint32_t>(message.size());
      message.resize(RoomFor(length, encrypts));
      const bool done = encrypts ? used.Encrypt(message.data(), &length,
                                                static_cast<std::uint32_t>(message.size()))
                                 : used.Decrypt(message.data(), &length);
      outcome.failed.push_back(!done);
      outcome.lengths.push_back(done ? length : 0);
      outcome.results.insert(outcome.results.end(), message.begin(),
                             message.begin() + static_cast<std::ptrdiff_t>(outcome.lengths.back()));
    }
    return outcome;
  }

  // Transforms all messages in one call, with exactly the room that they need. `failing` is the
  // number of the allocation that fails, or 0.
  [[nodiscard]] Outcome Together(const MessageKey& used, const std::vector<Bytes>& messages,
                                 bool encrypts, std::size_t misaligned, int failing = 0) const {
    Outcome outcome;
    Bytes data(misaligned);
    std::size_t room = 0;
    for (const Bytes& message : messages) {
      outcome.lengths.push_back(static_cast<std::uint32_t>(message.size()));
      data.insert(data.end(), message.begin(), message.end());
      room += RoomFor(outcome.lengths.back(), encrypts);
    }
    // Without spare capacity, so that a memory checker sees what is read after the messages.
    const Bytes exact(data.begin(), data.end());
    Bytes memory(2 * kAround + room, 0xEE);
    const auto failed = std::make_unique<bool[]>(messages.size());
    const MessageBatch batch{std::span(exact).subspan(misaligned),
                             outcome.lengths,
                             std::span(memory).subspan(kAround, room),
                             {failed.get(), messages.size()}};
    outcome.allocationFailed =
        RunFailing(failing, [&] { encrypts ? used.EncryptEach(batch) : used.DecryptEach(batch); });
    outcome.failed.assign(failed.get(), failed.get() + messages.size());
    const auto isUntouched = [](std::uint8_t byte) { return byte == 0xEE; };
    EXPECT_TRUE(std::all_of(memory.begin(), memory.begin() + kAround, isUntouched));
    EXPECT_TRUE(std::all_of(memory.end() - kAround, memory.end(), isUntouched));
    std::size_t total = 0;
    for (const std::uint32_t length : outcome.lengths) total += length;
    outcome.results.assign(memory.begin() + kAround,
                           memory.begin() + kAround + static_cast<std::ptrdiff_t>(total));
    return outcome;
  }

  void ExpectEqual(const MessageKey& used, const std::vector<Bytes>& messages) {
    for (const bool encrypts : {true, false}) {
      ASSERT_TRUE(OneByOne(used, messages, encrypts) ==
                  Together(used, messages, encrypts, random.Below(16)))
          << messages.size() << " messages, " << (encrypts ? "encrypted" : "decrypted");
    }
  }

  // Messages of any length, and ciphertexts of such messages, some of them damaged.
  std::vector<Bytes> SomeMessages(const MessageKey& used, std::size_t count, std::size_t longest) {
    std::vector<Bytes> messages(count);
    for (Bytes& message : messages) {
      message = random.Some(random.Below(longest + 1));
      if (random.Below(8) == 0) continue;
      auto length = static_cast<std::uint32_t>(message.size());
      message.resize(RoomFor(length, true));
      EXPECT_TRUE(used.Encrypt(message.data(), &length, length + 8));
      if (!message.empty() && random.Below(8) == 0) message.back() ^= 1;
    }
    return messages;
  }

  ProviderSession session{kEnhancedProviderName};
  HCRYPTKEY handle = session.KeyOf(GetParam(), kAlgorithmMd5, Bytes{'a', 'b', 'c'});
  std::unique_ptr<const MessageKey> key = SystemCryptoProvider().MakeMessageKey(handle);
  RandomSource random{20266};
};

class Rc4BatchTest : public MessageBatchTest {};

TEST_P(MessageBatchTest, EachResultIsThatOfTheMessageAlone) {
  for (const std::size_t longest : {0U, 7U, 24U, 70U, 3000U}) {
    for (int round = 0; round < 12; ++round) {
      const std::size_t most = std::size_t{1} << random.Below(longest > 1000 ? 7 : 12);
      ExpectEqual(*key, SomeMessages(*key, random.Below(most), longest));
    }
  }
}

TEST_P(MessageBatchTest, MessagesOfOneLengthGiveTheSameResults) {
  for (std::size_t length = 0; length <= 40; ++length) {
    std::vector<Bytes> messages(1100);
    for (Bytes& message : messages) message = random.Some(length);
    ExpectEqual(*key, messages);
  }
}

TEST_P(MessageBatchTest, LongMessagesAmongShortOnesGiveTheSameResults) {
  std::vector<Bytes> messages = SomeMessages(*key, 700, 30);
  messages[0] = random.Some(100'000);
  messages[350] = random.Some(65'536);
  messages[699] = random.Some(65'537);
  ExpectEqual(*key, messages);
}

TEST_P(MessageBatchTest, ThreadsMayUseAKeyAtOnce) {
  std::vector<std::vector<Bytes>> batches;
  std::vector<Outcome> expected;
  for (std::size_t longest = 1; longest < 5000; longest *= 3) {
    batches.push_back(SomeMessages(*key, 100, longest));
    expected.push_back(OneByOne(*key, batches.back(), true));
  }
  std::atomic<int> wrong{0};
  for (int round = 0; round < 20; ++round) {
    // A new key, so that the threads also compute what a key computes only once.
    const auto fresh = SystemCryptoProvider().MakeMessageKey(
        session.KeyOf(GetParam(), kAlgorithmMd5, Bytes{'a', 'b', 'c'}));
    std::vector<std::jthread> threads;
    for (std::size_t i = 0; i < 4; ++i) {
      threads.emplace_back([&, i] {
        for (std::size_t n = 0; n < batches.size(); ++n) {
          const std::size_t which = (n + 2 * i) % batches.size();
          if (!(Together(*fresh, batches[which], true, i) == expected[which])) ++wrong;
        }
      });
    }
  }
  EXPECT_EQ(wrong, 0);
}

// The memory that makes a batch fast may be lacking, also the memory that a key allocates only
// once.
TEST_P(MessageBatchTest, ResultsWithoutMemoryAreTheSame) {
  const std::vector<Bytes> messages = SomeMessages(*key, 1100, 30);
  for (const bool encrypts : {true, false}) {
    const Outcome expected = OneByOne(*key, messages, encrypts);
    FailEachInTurn([&](int nth) {
      const auto fresh = SystemCryptoProvider().MakeMessageKey(handle);
      const Outcome outcome = Together(*fresh, messages, encrypts, 0, nth);
      EXPECT_TRUE(outcome == expected);
      return outcome.allocationFailed;
    });
  }
}

// Zeros are encrypted to the key stream, which is as secret as the key.
TEST_P(Rc4BatchTest, AKeyLeavesNoKeyStreamInFreedMemory) {
  const Outcome streams = Together(*key, {Bytes(16), Bytes(600)}, true, 0);
  const FreedMemory freed(std::span(streams.results).first(16));
  key.reset();
  EXPECT_TRUE(SystemCryptoProvider().CryptDestroyKey(handle));
  EXPECT_EQ(freed.BlocksWithSecret(), 0U);
  std::make_unique<Bytes>(streams.results).reset();
  EXPECT_EQ(freed.BlocksWithSecret(), 1U);
}

// EncryptEach and DecryptEach of a provider that does not override them.
TEST_P(MessageBatchTest, DuplicatesGiveTheSameResultsAndLeaveNoHandle) {
  FaultyProvider provider;
  const auto shared = provider.MakeMessageKey(handle);
  ExpectEqual(*shared, SomeMessages(*key, 40, 30));
  EXPECT_EQ(provider.OpenHandles(), 0);
}

INSTANTIATE_TEST_SUITE_P(Ciphers, MessageBatchTest, testing::ValuesIn(kCiphers));
INSTANTIATE_TEST_SUITE_P(Rc4, Rc4BatchTest, testing::Values(kAlgorithmRc4));

}  // namespace
}  // namespace latchkey::test
