// Clients of the C interface in tests: objects that close with their scope, and calls whose outputs
// are checked against the rules of latchkey.h.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <span>
#include <string_view>
#include <tuple>
#include <utility>
#include <vector>

#include "latchkey.h"
#include "tests/support/bytes.h"

namespace latchkey::test {

inline constexpr std::uint8_t kGuard = 0xD7;

inline latchkey_settings SettingsOf(std::int32_t hash, std::int32_t cipher,
                                    std::int32_t provider = LATCHKEY_ANY_PROVIDER,
                                    std::uint32_t keyBits = 0, std::uint32_t effectiveBits = 0) {
  return {sizeof(latchkey_settings), 0, hash, cipher, provider, keyBits, effectiveBits};
}

// The part of a failure that tests compare.
struct Reason {
  std::int32_t status = LATCHKEY_OK;
  std::int32_t location = 0;
  std::int32_t number = 0;

  friend bool operator==(const Reason&, const Reason&) = default;
  friend void PrintTo(const Reason& reason, std::ostream* out) {
    *out << "status " << reason.status << ", location " << reason.location << ", number "
         << reason.number;
  }
};

inline Reason ReasonOf(const latchkey_failure& failure) {
  return {failure.status, failure.location, failure.number};
}

// An owner of an object that latchkey_..._close closes.
template <class Object, auto close>
class Owned {
 public:
  Owned() = default;
  explicit Owned(Object* object) noexcept : object_(object) {}
  Owned(Owned&& other) noexcept : object_(std::exchange(other.object_, nullptr)) {}
  Owned& operator=(Owned&& other) noexcept {
    std::swap(object_, other.object_);
    return *this;
  }
  ~Owned() { EXPECT_EQ(close(object_), LATCHKEY_OK); }

  // NOLINTNEXTLINE(google-explicit-constructor): it is passed like the pointer
  operator Object*() const noexcept { return object_; }
  [[nodiscard]] Object** Address() noexcept { return &object_; }
  Object* Release() noexcept { return std::exchange(object_, nullptr); }

 private:
  Object* object_ = nullptr;
};

using Key = Owned<latchkey_key, latchkey_key_close>;
using Stream = Owned<latchkey_stream, latchkey_stream_close>;
using Hash = Owned<latchkey_hash, latchkey_hash_close>;

// Fails the test unless the key can be opened.
Key OpenKey(const latchkey_settings& settings, std::span<const std::uint8_t> password);
Key OpenKey(const latchkey_settings& settings, std::string_view password = "secret");
Key OpenKey(std::int32_t cipher = LATCHKEY_RC2);
Stream OpenStream(latchkey_key* key, std::int32_t direction);

// Why opening fails; the key must be NULL then.
Reason RefusalOf(const latchkey_settings& settings, std::string_view password = "secret");

// The outcome of a call with an output.
struct Output {
  std::int32_t status = LATCHKEY_OK;
  std::size_t length = 0;
  Bytes room;
  Reason reason;

  // The result of a call that succeeded.
  [[nodiscard]] Bytes Result() const {
    EXPECT_EQ(reason, Reason{});
    return {room.begin(),
            room.begin() + static_cast<std::ptrdiff_t>(std::min(length, room.size()))};
  }
  // Whether each byte of the room is unchanged or zero.
  [[nodiscard]] bool IsBlank() const {
    return std::ranges::all_of(room, [](std::uint8_t byte) { return byte == kGuard || byte == 0; });
  }
};

// Calls call(buffer, length, failure) with a room of that size, and checks the rules for every
// output: nothing is written after the room, the length is right for the status, and the failure
// has the status.
template <class Call>
Output RunCall(std::size_t room, Call&& call) {
  Bytes memory(room + 16, kGuard);
  Output output{LATCHKEY_OK, room, {}, {}};
  latchkey_failure failure = LATCHKEY_FAILURE_INIT;
  output.status = std::forward<Call>(call)(memory.data(), &output.length, &failure);
  output.reason = ReasonOf(failure);
  EXPECT_TRUE(std::all_of(memory.begin() + static_cast<std::ptrdiff_t>(room), memory.end(),
                          [](std::uint8_t byte) { return byte == kGuard; }))
      << "written after the room";
  memory.resize(room);
  output.room = std::move(memory);
  EXPECT_EQ(output.reason.status, output.status);
  if (output.status == LATCHKEY_OK) {
    EXPECT_LE(output.length, room);
  } else {
    EXPECT_TRUE(output.IsBlank()) << "a part of the result after a failure";
    EXPECT_TRUE(output.status == LATCHKEY_BUFFER_TOO_SMALL ? output.length > room
                                                           : output.length == 0);
  }
  return output;
}

Output Encrypt(const latchkey_key* key, std::span<const std::uint8_t> input, std::size_t room);
Output Decrypt(const latchkey_key* key, std::span<const std::uint8_t> input, std::size_t room);
Output Update(latchkey_stream* stream, std::span<const std::uint8_t> input, std::size_t room);
Output Finish(latchkey_stream* stream, std::size_t room = 8);
Output Digest(std::int32_t hash, std::span<const std::uint8_t> input, std::size_t room = 20);

// With enough room.
Bytes Encrypted(const latchkey_key* key, std::span<const std::uint8_t> input);
Bytes Decrypted(const latchkey_key* key, std::span<const std::uint8_t> input);

// Records in one buffer.
template <class Offset>
struct Column {
  std::vector<Offset> offsets{0};
  Bytes data;

  void Add(std::span<const std::uint8_t> record) {
    data.insert(data.end(), record.begin(), record.end());
    offsets.push_back(static_cast<Offset>(data.size()));
  }
  [[nodiscard]] latchkey_records View() const {
    return {sizeof(latchkey_records), sizeof(Offset), offsets.size() - 1,
            offsets.data(),           data.data(),    data.size()};
  }
};

// Results with their memory. Offsets of 4 or 8 bytes.
template <class Offset>
struct ResultColumn {
  ResultColumn(std::size_t count, std::size_t room)
      : offsets(count + 1, Offset{-1}), data(room + 16, kGuard), statuses(count, -1) {
    view.offset_size = sizeof(Offset);
    view.offsets = offsets.data();
    view.data = data.data();
    view.data_length = room;
    view.statuses = statuses.data();
  }

  [[nodiscard]] Bytes operator[](std::size_t i) const {
    return {data.begin() + static_cast<std::ptrdiff_t>(offsets[i]),
            data.begin() + static_cast<std::ptrdiff_t>(offsets[i + 1])};
  }
  [[nodiscard]] bool IsUntouched() const {
    return std::ranges::all_of(data, [](std::uint8_t byte) { return byte == kGuard; }) &&
           std::ranges::all_of(offsets, [](Offset offset) { return offset == -1; }) &&
           std::ranges::all_of(statuses, [](std::int32_t status) { return status == -1; });
  }

  std::vector<Offset> offsets;
  Bytes data;
  std::vector<std::int32_t> statuses;
  latchkey_results view = LATCHKEY_RESULTS_INIT;
};

}  // namespace latchkey::test
