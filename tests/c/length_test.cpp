// Inputs of 4 GiB and more. Functions refuse them without reading them, or process them whole.
#include <gtest/gtest.h>
#include <sys/mman.h>
#include <unistd.h>

#include "tests/c/client.h"

namespace latchkey::test {
namespace {

constexpr std::size_t k4GiB = std::size_t{1} << 32;

// Memory of 8 GiB that cannot be read or written.
class Unreadable {
 public:
  Unreadable()
      : begin_(static_cast<std::uint8_t*>(::mmap(
            nullptr, 2 * k4GiB, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0))) {
    EXPECT_NE(begin_, MAP_FAILED);
  }
  Unreadable(const Unreadable&) = delete;
  Unreadable& operator=(const Unreadable&) = delete;
  ~Unreadable() { ::munmap(begin_, 2 * k4GiB); }

  [[nodiscard]] std::uint8_t* Get() const { return begin_; }

 private:
  std::uint8_t* begin_;
};

// A range of more than 4 GiB that uses little memory: after its first 64 MiB it maps the same 64
// MiB again and again.
class Repeated {
 public:
  static constexpr std::size_t kPart = std::size_t{1} << 26;
  static constexpr std::size_t kSize = k4GiB + 2 * kPart;

  Repeated()
      : begin_(
            static_cast<std::uint8_t*>(::mmap(nullptr, kSize, PROT_READ | PROT_WRITE,
                                              MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0))),
        file_(::memfd_create("repeated", 0)) {
    EXPECT_EQ(::ftruncate(file_, kPart), 0);
    for (std::size_t at = kPart; at < kSize; at += kPart) {
      EXPECT_NE(
          ::mmap(begin_ + at, kPart, PROT_READ | PROT_WRITE, MAP_SHARED | MAP_FIXED, file_, 0),
          MAP_FAILED);
    }
  }
  Repeated(const Repeated&) = delete;
  Repeated& operator=(const Repeated&) = delete;
  ~Repeated() {
    ::munmap(begin_, kSize);
    ::close(file_);
  }

  [[nodiscard]] std::uint8_t* Get() const { return begin_; }

 private:
  std::uint8_t* begin_;
  int file_;
};

TEST(CLengthTest, ARecordOf4GiBFailsAlone) {
  const Key rc4 = OpenKey(LATCHKEY_RC4);
  const Repeated data;
  const Repeated room;
  std::vector<std::int64_t> offsets{0, 5, 5 + static_cast<std::int64_t>(k4GiB)};
  offsets.push_back(offsets.back() + 7);
  const latchkey_records records{sizeof records, 8, 3, offsets.data(), data.Get(), Repeated::kSize};
  ResultColumn<std::int64_t> results(3, 0);
  results.view.data = room.Get();
  results.view.data_length = k4GiB + 12;
  latchkey_failure failure = LATCHKEY_FAILURE_INIT;
  ASSERT_EQ(latchkey_encrypt_records(rc4, &records, 1, &results.view, &failure), LATCHKEY_OK);
  EXPECT_EQ(ReasonOf(failure), (Reason{LATCHKEY_FAULT, 438, 6}));
  EXPECT_EQ(results.statuses,
            (std::vector<std::int32_t>{LATCHKEY_OK, LATCHKEY_FAULT, LATCHKEY_OK}));
  EXPECT_EQ(results.offsets, (std::vector<std::int64_t>{0, 5, 5, 12}));
  EXPECT_EQ(Bytes(room.Get() + 5, room.Get() + 12), Encrypted(rc4, Bytes(7)));
}

TEST(CLengthTest, ResultsOf2GiBNeedOffsetsOf8Bytes) {
  const Key rc4 = OpenKey(LATCHKEY_RC4);
  const Unreadable data;
  const Unreadable room;
  const std::vector<std::int64_t> offsets{0, std::int64_t{1} << 31};
  const latchkey_records records{sizeof records, 8, 1, offsets.data(), data.Get(), k4GiB};
  ResultColumn<std::int32_t> results(1, 0);
  results.view.data = room.Get();
  results.view.data_length = k4GiB;
  EXPECT_EQ(latchkey_encrypt_records(rc4, &records, 1, &results.view, nullptr),
            LATCHKEY_BAD_ARGUMENT);
  EXPECT_TRUE(results.IsUntouched());
}

// sha1sum of 4294967301 zero bytes.
TEST(CLengthTest, DigestsHaveNoLimitOfLength) {
  const Repeated data;
  EXPECT_EQ(Hex(Digest(LATCHKEY_SHA1, std::span(data.Get(), k4GiB + 5)).Result()),
            "7CE9D83C5EACCA17B354408CE637473229A7D5E2");
}

TEST(CLengthTest, MessagesOf4GiBAreAnOverflowBeforeTheyAreRead) {
  const Key key = OpenKey(LATCHKEY_3DES);
  const Unreadable input;
  const Unreadable output;
  for (const std::size_t length : {k4GiB - 8, k4GiB - 1, k4GiB, k4GiB + 8}) {
    std::size_t room = 2 * k4GiB;
    latchkey_failure failure = LATCHKEY_FAILURE_INIT;
    EXPECT_EQ(latchkey_encrypt(key, input.Get(), length, output.Get(), &room, &failure),
              LATCHKEY_FAULT);
    EXPECT_EQ(ReasonOf(failure), (Reason{LATCHKEY_FAULT, 438, 6}));
    EXPECT_STREQ(failure.text, "Overflow");
    EXPECT_EQ(room, 0U);
    if (length < k4GiB) continue;
    room = 2 * k4GiB;
    EXPECT_EQ(latchkey_decrypt(key, input.Get(), length, output.Get(), &room, &failure),
              LATCHKEY_FAULT);
    EXPECT_EQ(ReasonOf(failure), (Reason{LATCHKEY_FAULT, 436, 6}));
  }
}

TEST(CLengthTest, PasswordsOf4GiBAreAnOverflowBeforeTheyAreRead) {
  const Unreadable password;
  latchkey_key* opened = nullptr;
  latchkey_failure failure = LATCHKEY_FAILURE_INIT;
  const latchkey_settings settings = SettingsOf(LATCHKEY_MD5, LATCHKEY_RC4);
  EXPECT_EQ(latchkey_key_open(&settings, password.Get(), k4GiB, &opened, &failure), LATCHKEY_FAULT);
  EXPECT_EQ(ReasonOf(failure), (Reason{LATCHKEY_FAULT, 438, 6}));
  EXPECT_EQ(opened, nullptr);
}

TEST(CLengthTest, LongInputsWithTooLittleRoomAreNotRead) {
  const Unreadable memory;
  const std::span input(memory.Get(), k4GiB);
  const Key key = OpenKey(LATCHKEY_3DES);
  EXPECT_EQ(Update(OpenStream(key, LATCHKEY_ENCRYPT), input, 1).length, k4GiB);
  const Output encoded = RunCall(1, [&](auto* text, auto... rest) {
    return latchkey_hex_encode(input.data(), input.size(), reinterpret_cast<char*>(text), rest...);
  });
  EXPECT_EQ(encoded.length, 2 * k4GiB + 1);
  const Output decoded = RunCall(1, [&](auto... rest) {
    return latchkey_hex_decode(reinterpret_cast<const char*>(input.data()), input.size(), rest...);
  });
  EXPECT_EQ(decoded.length, k4GiB / 2);
}

}  // namespace
}  // namespace latchkey::test
