// Arguments that the functions refuse, and rooms of every size.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <functional>
#include <string>

#include "tests/c/client.h"

namespace latchkey::test {
namespace {

// Every function with an input and an output of bytes.
struct Transformation {
  std::string name;
  std::function<std::int32_t(const std::uint8_t* input, std::size_t inputLength,
                             std::uint8_t* output, std::size_t* outputLength,
                             latchkey_failure* failure)>
      call;
  Bytes input;
  std::size_t needed;  // room, and the length of the result
};

class CArgumentTest : public testing::Test {
 protected:
  CArgumentTest() {
    const Bytes text = BytesOf("a text of 23 characters");
    const Bytes ciphertext = Encrypted(key, text);
    transformations = {
        {"encrypt", [this](auto... arguments) { return latchkey_encrypt(key, arguments...); }, text,
         24},
        {"decrypt", [this](auto... arguments) { return latchkey_decrypt(key, arguments...); },
         ciphertext, 23},
        {"stream_update",
         [this](auto... arguments) { return latchkey_stream_update(stream, arguments...); }, text,
         16},
        {"digest", [](auto... arguments) { return latchkey_digest(LATCHKEY_SHA1, arguments...); },
         text, 20},
        {"hex_encode",
         [](auto* input, auto length, auto* output, auto... rest) {
           return latchkey_hex_encode(input, length, reinterpret_cast<char*>(output), rest...);
         },
         text, 47},
        {"hex_decode",
         [](auto* input, auto... rest) {
           return latchkey_hex_decode(reinterpret_cast<const char*>(input), rest...);
         },
         BytesOf("414243444546"), 6},
    };
  }

  Output Call(const Transformation& function, std::size_t room) const {
    return RunCall(room, [&](auto* output, auto* length, auto* failure) {
      return function.call(function.input.data(), function.input.size(), output, length, failure);
    });
  }

  Key key = OpenKey(LATCHKEY_3DES);
  Stream stream = OpenStream(key, LATCHKEY_ENCRYPT);
  std::vector<Transformation> transformations;
};

TEST_F(CArgumentTest, EveryRoomThatIsTooSmallGivesTheRoomNeeded) {
  for (const Transformation& function : transformations) {
    SCOPED_TRACE(function.name);
    for (std::size_t room = 0; room < function.needed; ++room) {
      const Output output = Call(function, room);
      EXPECT_EQ(output.reason, (Reason{LATCHKEY_BUFFER_TOO_SMALL, 0, 0}));
      EXPECT_EQ(output.length, function.needed);
    }
    EXPECT_EQ(Call(function, function.needed).Result().size(), function.needed);
  }
}

TEST_F(CArgumentTest, TheBufferMayBeNullToAskForTheRoom) {
  for (const Transformation& function : transformations) {
    std::size_t length = 0;
    EXPECT_EQ(
        function.call(function.input.data(), function.input.size(), nullptr, &length, nullptr),
        LATCHKEY_BUFFER_TOO_SMALL);
    EXPECT_EQ(length, function.needed) << function.name;
  }
}

TEST_F(CArgumentTest, PlaintextsMayHaveExactlyTheirRoom) {
  for (std::size_t length = 0; length <= 17; ++length) {
    const Bytes text = SampleBytes(length);
    const Bytes ciphertext = Encrypted(key, text);
    for (std::size_t room = 0; room <= ciphertext.size(); ++room) {
      const Output output = Decrypt(key, ciphertext, room);
      if (room < length) {
        EXPECT_EQ(output.status, LATCHKEY_BUFFER_TOO_SMALL);
        EXPECT_EQ(output.length, length);
      } else {
        EXPECT_EQ(output.Result(), text);
      }
    }
  }
}

TEST_F(CArgumentTest, MissingPointersAreRefused) {
  for (const Transformation& function : transformations) {
    SCOPED_TRACE(function.name);
    Bytes buffer(64, kGuard);
    std::size_t length = buffer.size();
    latchkey_failure failure = LATCHKEY_FAILURE_INIT;
    EXPECT_EQ(function.call(nullptr, 2, buffer.data(), &length, &failure), LATCHKEY_BAD_ARGUMENT);
    EXPECT_EQ(length, 0U);
    EXPECT_EQ(ReasonOf(failure), (Reason{LATCHKEY_BAD_ARGUMENT, 0, 0}));
    EXPECT_STREQ(failure.text, "Bad argument");
    length = 64;
    EXPECT_EQ(function.call(function.input.data(), 2, nullptr, &length, nullptr),
              LATCHKEY_BAD_ARGUMENT);
    EXPECT_EQ(length, 0U);
    EXPECT_EQ(function.call(function.input.data(), 2, buffer.data(), nullptr, nullptr),
              LATCHKEY_BAD_ARGUMENT);
    EXPECT_EQ(buffer, Bytes(64, kGuard));
  }
}

TEST_F(CArgumentTest, NullInputsOfLengthZeroAreGood) {
  for (const Transformation& function : transformations) {
    if (function.name == "decrypt") continue;  // an empty ciphertext is bad
    const Output output =
        RunCall(64, [&](auto... arguments) { return function.call(nullptr, 0, arguments...); });
    EXPECT_EQ(output.status, LATCHKEY_OK) << function.name;
  }
}

TEST_F(CArgumentTest, OverlappingBuffersAreRefusedAndAdjacentOnesAreNot) {
  for (const Transformation& function : transformations) {
    SCOPED_TRACE(function.name);
    constexpr std::size_t room = 64;
    Bytes memory(256, kGuard);
    const std::size_t size = function.input.size();
    const auto call = [&](std::size_t begin) {
      std::copy(function.input.begin(), function.input.end(), memory.begin() + 100);
      std::size_t length = room;
      const std::int32_t status =
          function.call(memory.data() + 100, size, memory.data() + begin, &length, nullptr);
      EXPECT_EQ(length == 0, status != LATCHKEY_OK);
      return status;
    };
    for (std::size_t begin = 100 - room + 1; begin < 100 + size; ++begin) {
      EXPECT_EQ(call(begin), LATCHKEY_BAD_ARGUMENT) << begin;
    }
    EXPECT_EQ(call(100 - room), LATCHKEY_OK);
    EXPECT_EQ(call(100 + size), LATCHKEY_OK);
  }
}

TEST_F(CArgumentTest, FailuresOfAnotherSizeAreRefusedAndNotWritten) {
  for (const Transformation& function : transformations) {
    for (const std::uint32_t size : {0U, 95U, 97U, 0xFFFFFFFFU}) {
      SCOPED_TRACE(function.name);
      Bytes buffer(64, kGuard);
      std::size_t length = buffer.size();
      latchkey_failure failure = LATCHKEY_FAILURE_INIT;
      failure.size = size;
      failure.status = 77;
      EXPECT_EQ(function.call(function.input.data(), function.input.size(), buffer.data(), &length,
                              &failure),
                LATCHKEY_BAD_ARGUMENT);
      EXPECT_EQ(failure.status, 77);
      EXPECT_EQ(length, 0U);
      EXPECT_EQ(buffer, Bytes(64, kGuard));
    }
  }
}

TEST_F(CArgumentTest, SuccessClearsTheFailure) {
  for (const Transformation& function : transformations) {
    Bytes buffer(64);
    std::size_t length = buffer.size();
    latchkey_failure failure{sizeof failure, 1, 2, 3, 4, "five"};
    EXPECT_EQ(function.call(function.input.data(), function.input.size(), buffer.data(), &length,
                            &failure),
              LATCHKEY_OK);
    EXPECT_EQ(ReasonOf(failure), Reason{}) << function.name;
    EXPECT_EQ(failure.type, 0);
    EXPECT_STREQ(failure.text, "");
  }
}

TEST_F(CArgumentTest, LengthsThatNoMemoryHasAreRefused) {
  for (const Transformation& function : transformations) {
    for (const std::size_t length : {SIZE_MAX, SIZE_MAX / 2 + 1}) {
      std::uint8_t bytes[64];
      std::size_t room = 1;
      EXPECT_EQ(function.call(function.input.data(), length, bytes, &room, nullptr),
                LATCHKEY_BAD_ARGUMENT)
          << function.name;
      room = length;
      EXPECT_EQ(function.call(function.input.data(), function.input.size(), bytes, &room, nullptr),
                LATCHKEY_BAD_ARGUMENT);
      EXPECT_EQ(room, 0U);
    }
  }
  EXPECT_EQ(latchkey_random_bytes(nullptr, 1, nullptr), LATCHKEY_BAD_ARGUMENT);
  EXPECT_EQ(latchkey_salt(nullptr, 1, nullptr), LATCHKEY_BAD_ARGUMENT);
  std::uint8_t byte = kGuard;
  EXPECT_EQ(latchkey_random_bytes(&byte, SIZE_MAX, nullptr), LATCHKEY_BAD_ARGUMENT);
  EXPECT_EQ(byte, kGuard);
}

// Functions with an object, each given NULL and objects of the other kinds.
TEST_F(CArgumentTest, NullAndObjectsOfOtherKindsAreBadObjects) {
  Hash hash;
  ASSERT_EQ(latchkey_hash_open(LATCHKEY_MD5, hash.Address(), nullptr), LATCHKEY_OK);
  const std::array<void*, 4> objects{nullptr, static_cast<latchkey_key*>(key),
                                     static_cast<latchkey_stream*>(stream),
                                     static_cast<latchkey_hash*>(hash)};
  for (void* const object : objects) {
    const Bytes input = SampleBytes(16);
    const auto refuses = [&](auto&& call) {
      const Output output = RunCall(64, call);
      EXPECT_EQ(output.reason, (Reason{LATCHKEY_BAD_OBJECT, 0, 0}));
      EXPECT_EQ(output.room, Bytes(64, kGuard));
    };
    if (object != objects[1]) {
      auto* const wrong = static_cast<latchkey_key*>(object);
      refuses([&](auto... rest) { return latchkey_encrypt(wrong, input.data(), 16, rest...); });
      refuses([&](auto... rest) { return latchkey_decrypt(wrong, input.data(), 16, rest...); });
      EXPECT_EQ(latchkey_key_share(wrong), LATCHKEY_BAD_OBJECT);
      EXPECT_EQ(latchkey_key_close(wrong), object == nullptr ? LATCHKEY_OK : LATCHKEY_BAD_OBJECT);
      auto* opened = static_cast<latchkey_stream*>(stream);
      EXPECT_EQ(latchkey_stream_open(wrong, LATCHKEY_ENCRYPT, &opened, nullptr),
                LATCHKEY_BAD_OBJECT);
      EXPECT_EQ(opened, nullptr);
    }
    if (object != objects[2]) {
      auto* const wrong = static_cast<latchkey_stream*>(object);
      refuses(
          [&](auto... rest) { return latchkey_stream_update(wrong, input.data(), 16, rest...); });
      refuses([&](auto... rest) { return latchkey_stream_finish(wrong, rest...); });
      EXPECT_EQ(latchkey_stream_close(wrong),
                object == nullptr ? LATCHKEY_OK : LATCHKEY_BAD_OBJECT);
    }
    if (object != objects[3]) {
      auto* const wrong = static_cast<latchkey_hash*>(object);
      EXPECT_EQ(latchkey_hash_update(wrong, input.data(), 16, nullptr), LATCHKEY_BAD_OBJECT);
      refuses([&](auto... rest) { return latchkey_hash_finish(wrong, rest...); });
      EXPECT_EQ(latchkey_hash_close(wrong), object == nullptr ? LATCHKEY_OK : LATCHKEY_BAD_OBJECT);
    }
  }
}

TEST_F(CArgumentTest, ObjectsNeedAPlaceForTheirPointer) {
  const latchkey_settings settings = SettingsOf(LATCHKEY_MD5, LATCHKEY_RC4);
  EXPECT_EQ(latchkey_key_open(&settings, nullptr, 0, nullptr, nullptr), LATCHKEY_BAD_ARGUMENT);
  EXPECT_EQ(latchkey_stream_open(key, LATCHKEY_ENCRYPT, nullptr, nullptr), LATCHKEY_BAD_ARGUMENT);
  EXPECT_EQ(latchkey_hash_open(LATCHKEY_MD5, nullptr, nullptr), LATCHKEY_BAD_ARGUMENT);
  latchkey_key* opened = nullptr;
  EXPECT_EQ(latchkey_key_open(nullptr, nullptr, 0, &opened, nullptr), LATCHKEY_BAD_ARGUMENT);
  EXPECT_EQ(latchkey_key_open(&settings, nullptr, 1, &opened, nullptr), LATCHKEY_BAD_ARGUMENT);
}

}  // namespace
}  // namespace latchkey::test
