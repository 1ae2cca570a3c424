// A stream in pieces, on any number of threads, gives the same bytes as one call.
#include "cli/cipher_stream.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <random>
#include <set>
#include <stdexcept>

#include "cli/failure.h"
#include "crypto/algorithms.h"
#include "crypto/open_provider.h"
#include "provider/block_size.h"
#include "tests/support/test_seed.h"

namespace latchkey::cli::test {
namespace {

using Bytes = std::vector<std::uint8_t>;

constexpr std::size_t kPiece = 64;
constexpr std::array<std::size_t, 3> kWorkers{1, 2, 5};
constexpr std::int16_t kRc4 = 1;
constexpr std::int16_t kDes = 3;
constexpr std::array<std::uint8_t, 6> kPassword{'s', 'e', 'c', 'r', 'e', 't'};

class CipherStreamTest : public testing::Test {
 protected:
  PasswordKey MakeKey(std::int16_t cipher) {
    PasswordKey key;
    EXPECT_EQ(key.Derive(context,
                         {FindHashAlgorithm(1).id, FindCipherAlgorithm(cipher, true), kPassword}),
              CipherStep::Done);
    return key;
  }

  CipherWork Work(std::int16_t cipher, bool decrypts, std::size_t workers) {
    const bool inOrder = !decrypts || cipher == kRc4;
    CipherWork work{
        decrypts ? CipherDirection::Decrypt : CipherDirection::Encrypt, {}, workers, "file"};
    while (work.keys.size() < (inOrder ? 1 : workers)) work.keys.push_back(MakeKey(cipher));
    return work;
  }

  // From `source` to `result`.
  ByteStreams Streams(const Bytes& source) {
    position = 0;
    result.clear();
    return {[&](std::span<std::uint8_t> bytes) {
              const std::size_t count = std::min(bytes.size(), source.size() - position);
              std::copy_n(source.begin() + static_cast<std::ptrdiff_t>(position), count,
                          bytes.begin());
              position += count;
              return count;
            },
            [] {},
            [&](std::span<const std::uint8_t> bytes) {
              result.insert(result.end(), bytes.begin(), bytes.end());
            }};
  }

  Bytes Whole(const Bytes& data, std::int16_t cipher) {
    Bytes buffer = data;
    buffer.resize(data.size() + provider::kBlockSize);
    auto length = static_cast<std::uint32_t>(data.size());
    EXPECT_EQ(MakeKey(cipher).Transform(CipherDirection::Encrypt, buffer, length),
              CipherStep::Done);
    buffer.resize(length);
    return buffer;
  }

  Bytes Random(std::size_t length) {
    Bytes data(length);
    std::generate(data.begin(), data.end(), [&] { return static_cast<std::uint8_t>(random()); });
    return data;
  }

  std::mt19937 random = latchkey::test::Seeded<std::mt19937>();
  UniqueContext context = OpenProvider(true);
  Bytes result;
  std::size_t position = 0;
};

TEST_F(CipherStreamTest, PiecesOnAnyNumberOfThreadsGiveTheSameBytesAsOneCall) {
  std::set<std::size_t> lengths{0, 1, 7, 8, 9};
  for (std::size_t border = kPiece; border <= 5 * kPiece; border += kPiece) {
    lengths.insert({border - 9, border - 8, border - 7, border - 1, border, border + 1, border + 7,
                    border + 8, border + 9});
  }
  for (int i = 0; i < 8; ++i) lengths.insert(random() % (100 * kPiece));
  for (const std::size_t length : lengths) {
    const Bytes plain = Random(length);
    for (std::int16_t cipher = 1; cipher <= 5; ++cipher) {
      const Bytes whole = Whole(plain, cipher);
      for (const std::size_t workers : kWorkers) {
        SCOPED_TRACE(testing::Message()
                     << length << " bytes, cipher " << cipher << ", " << workers);
        CipherWork encryption = Work(cipher, false, workers);
        const ByteCounts there = RunCipher(encryption, Streams(plain), kPiece);
        EXPECT_EQ(result, whole);
        EXPECT_EQ(there.in, length);
        EXPECT_EQ(there.out, whole.size());
        CipherWork decryption = Work(cipher, true, workers);
        const ByteCounts back = RunCipher(decryption, Streams(whole), kPiece);
        EXPECT_EQ(result, plain);
        EXPECT_EQ(back.in, whole.size());
        EXPECT_EQ(back.out, length);
      }
    }
  }
}

TEST_F(CipherStreamTest, BadPaddingIsFoundOnlyInTheLastPiece) {
  Bytes whole = Whole(Random(10 * kPiece + 20), kDes);
  whole[whole.size() - 9] ^= 0x80;  // changes the last byte of the padding
  for (const std::size_t workers : kWorkers) {
    CipherWork work = Work(kDes, true, workers);
    try {
      RunCipher(work, Streams(whole), kPiece);
      ADD_FAILURE();
    } catch (const CommandError& error) {
      EXPECT_EQ(error.Get().location, 717);
      EXPECT_EQ(error.Get().file, "file");
    }
    EXPECT_EQ(result.size(), 10 * kPiece);
  }
}

TEST_F(CipherStreamTest, ExceptionsOfTheStreamsPassThrough) {
  const Bytes plain(50 * kPiece);
  for (const std::size_t workers : kWorkers) {
    CipherWork work = Work(kDes, false, workers);
    ByteStreams streams = Streams(plain);
    const auto read = streams.read;
    streams.read = [&](std::span<std::uint8_t> bytes) {
      if (position > 20 * kPiece) throw std::runtime_error("read");
      return read(bytes);
    };
    EXPECT_THROW(RunCipher(work, streams, kPiece), std::runtime_error);
    EXPECT_EQ(result.size(), 21 * kPiece - kPiece);

    streams = Streams(plain);
    const auto write = streams.write;
    streams.write = [&](std::span<const std::uint8_t> bytes) {
      if (result.size() == 20 * kPiece) throw std::length_error("write");
      write(bytes);
    };
    EXPECT_THROW(RunCipher(work, streams, kPiece), std::length_error);
    EXPECT_EQ(result.size(), 20 * kPiece);
  }
}

TEST_F(CipherStreamTest, InputOfOnePieceUsesOneThread) {
  for (const bool inOrder : {false, true}) {
    EXPECT_EQ(CipherWorkers(0, inOrder), 1);
    EXPECT_EQ(CipherWorkers(kCipherPiece, inOrder), 1);
    EXPECT_GE(CipherWorkers(std::nullopt, inOrder), 1);
    EXPECT_EQ(CipherWorkers(kCipherPiece + 1, inOrder), CipherWorkers(std::nullopt, inOrder));
  }
}

}  // namespace
}  // namespace latchkey::cli::test
