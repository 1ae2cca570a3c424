#include "base/secure_memory.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <stdexcept>
#include <vector>

#include "tests/support/freed_memory.h"

namespace latchkey::test {
namespace {

TEST(SecureWipeTest, ZeroesOnlyTheGivenBytes) {
  for (std::size_t from = 0; from < 9; ++from) {
    for (std::size_t size = 0; size <= 40; ++size) {
      std::array<std::uint8_t, 64> memory{};
      memory.fill(0xA5);
      SecureWipe(memory.data() + from, size);
      for (std::size_t i = 0; i < memory.size(); ++i) {
        ASSERT_EQ(memory[i], i >= from && i < from + size ? 0 : 0xA5) << from << ' ' << size;
      }
    }
  }
}

TEST(SecureWipeTest, AcceptsANullPointerWithSizeZero) { EXPECT_NO_THROW(SecureWipe(nullptr, 0)); }

const std::vector<std::uint8_t> kSecret(32, 0x77);

TEST(WipedBytesTest, NoFreedBlockHoldsTheirContent) {
  const FreedMemory freed(kSecret);
  {
    WipedBytes bytes(100, 0x77);
    bytes.resize(1000, 0x77);
    bytes.shrink_to_fit();
    const WipedBytes copy = bytes;
    bytes = WipedBytes(300, 0x77);
  }
  EXPECT_EQ(freed.BlocksWithSecret(), 0U);
}

TEST(WipedBytesTest, AnOrdinaryVectorIsNotWiped) {
  const FreedMemory freed(kSecret);
  { const std::vector<std::uint8_t> bytes(100, 0x77); }
  EXPECT_EQ(freed.BlocksWithSecret(), 1U);
}

// A text that is shorter than its storage.
class ShortenedText {
 public:
  // The names that standard containers have.
  char16_t* data() { return storage_.data(); }
  // NOLINTNEXTLINE(readability-identifier-naming)
  [[nodiscard]] std::size_t capacity() const { return storage_.size() - 1; }
  [[nodiscard]] const std::array<char16_t, 101>& Storage() const { return storage_; }
  void Fill() { storage_.fill(u'x'); }

 private:
  std::array<char16_t, 101> storage_{};
};

TEST(WipeAtExitTest, WipesTheWholeCapacityAtEveryExitOfTheScope) {
  ShortenedText text;
  text.Fill();
  const auto leaveEarly = [&text] {
    const WipeAtExit wiper(text);
    throw std::runtime_error("early");
  };
  EXPECT_THROW(leaveEarly(), std::runtime_error);
  std::array<char16_t, 101> expected{};
  expected.back() = u'x';
  EXPECT_EQ(text.Storage(), expected);
}

TEST(WipeAtExitTest, WipesAllBytesOfAPlainValue) {
  struct Value {
    std::uint8_t byte = 1;
    double number = 2;
  } value;
  { const WipeAtExit wiper(value); }
  EXPECT_EQ(value.byte, 0);
  EXPECT_EQ(value.number, 0);
}

TEST(WipeUnlessKeptTest, WipesHoweverTheScopeEndsUnlessKept) {
  std::array<std::uint8_t, 3> bytes{1, 2, 3};
  const auto leaveEarly = [&bytes] {
    const WipeUnlessKept wiper(bytes);
    throw std::runtime_error("early");
  };
  {
    WipeUnlessKept wiper(bytes);
    wiper.Keep();
  }
  EXPECT_EQ(bytes, (std::array<std::uint8_t, 3>{1, 2, 3}));
  EXPECT_THROW(leaveEarly(), std::runtime_error);
  EXPECT_EQ(bytes, (std::array<std::uint8_t, 3>{}));
}

}  // namespace
}  // namespace latchkey::test
