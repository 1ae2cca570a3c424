// The C interface: any calls in any order, with any numbers, lengths and handles.
#include <array>

#include "com/latchkey.h"
#include "fuzz/input.h"

namespace {

using latchkey::fuzz::Input;
using latchkey::fuzz::Require;

// What the calls work on. The buffer has guard bytes behind the room that a call is told of.
class Session {
 public:
  explicit Session(Input& input) : input_(input) {}
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;
  ~Session() {
    static_cast<void>(latchkey_crypto_close(crypto_));
    static_cast<void>(latchkey_thread_close(thread_));
    static_cast<void>(latchkey_timer_close(timer_));
  }

  void CallOnce() {
    const std::uint8_t choice = input_.Take<std::uint8_t>();
    room_ = input_.Take<std::uint8_t>();
    length_ = room_;
    buffer_.fill(kGuard);
    const int status = choice % 16 < 8 ? CallObject(choice % 8) : CallData(choice % 8);
    Require(status >= LATCHKEY_OK && status < LATCHKEY_STATUS_COUNT);
    for (std::size_t i = room_; i < buffer_.size(); ++i) Require(buffer_.at(i) == kGuard);
    Require(latchkey_status_text(status) != nullptr);
  }

 private:
  int CallObject(int choice) {
    latchkey_error error{};
    std::int32_t number = 0;
    switch (choice) {
      case 0:
        return thread_ == nullptr ? latchkey_thread_open(&thread_) : LATCHKEY_OK;
      case 1:
        return latchkey_thread_close(thread_);
      case 2:
        return crypto_ == nullptr ? latchkey_crypto_open(&crypto_) : LATCHKEY_OK;
      case 3:
        return latchkey_crypto_close(crypto_);
      case 4:
        return latchkey_error_read(thread_, &error);
      case 5:
        return latchkey_error_app_description(thread_, Characters(), &length_);
      case 6:
        return latchkey_error_rt_description(thread_, Characters(), &length_);
      default:
        return timer_ == nullptr ? latchkey_timer_open(&timer_)
                                 : latchkey_timer_elapsed(timer_, &number);
    }
  }

  int CallData(int choice) {
    const auto flags = input_.Take<std::uint32_t>() % 8;
    const std::int32_t number = input_.Take<std::int8_t>();
    const auto piece = input_.TakePiece();
    switch (choice) {
      case 0:
      case 1:
        return Transform(choice == 0, flags, number, piece);
      case 2:
        return latchkey_hash(crypto_, number, piece.data(), piece.size(), Bytes(), &length_);
      case 3:
        return latchkey_random_bytes(crypto_, Bytes(), room_);
      case 4:
        return latchkey_create_random(crypto_, flags, number, Bytes(), &length_);
      case 5:
        return latchkey_create_salt(crypto_, flags, number, Bytes(), &length_);
      case 6:
        return latchkey_hex_encode(piece.data(), piece.size(), Characters(), &length_);
      default:
        return latchkey_hex_decode(reinterpret_cast<const char*>(piece.data()), piece.size(),
                                   Bytes(), &length_);
    }
  }

  int Transform(bool encrypts, std::uint32_t flags, std::int32_t number,
                std::span<const std::uint8_t> piece) {
    const auto password = input_.TakePiece();
    const latchkey_key key{flags,
                           number % 8,
                           input_.Take<std::int8_t>() % 8,
                           input_.Take<std::uint16_t>(),
                           password.data(),
                           password.size()};
    const auto call = encrypts ? latchkey_encrypt : latchkey_decrypt;
    return call(crypto_, &key, piece.data(), piece.size(), Bytes(), &length_);
  }

  std::uint8_t* Bytes() { return buffer_.data(); }
  char* Characters() { return reinterpret_cast<char*>(buffer_.data()); }

  static constexpr std::uint8_t kGuard = 0xD7;

  Input& input_;
  latchkey_thread* thread_ = nullptr;
  latchkey_crypto* crypto_ = nullptr;
  latchkey_timer* timer_ = nullptr;
  std::array<std::uint8_t, 272> buffer_{};
  std::size_t room_ = 0;
  std::size_t length_ = 0;
};

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Input input(data, size);
  Session session(input);
  while (!input.IsEmpty()) session.CallOnce();
  return 0;
}
