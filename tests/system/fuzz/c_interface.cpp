// The C interface: any calls in any order, with any numbers and lengths, with open and closed
// handles, handles of another kind, invalid handles and null pointers.
#include <algorithm>
#include <array>

#include "latchkey.h"
#include "tests/system/fuzz/drawn_connectivity.h"
#include "tests/system/fuzz/handles.h"
#include "tests/system/fuzz/input.h"

namespace {

using latchkey::fuzz::DrawnConnectivity;
using latchkey::fuzz::HandleChoice;
using latchkey::fuzz::HandleNumbers;
using latchkey::fuzz::Handles;
using latchkey::fuzz::Input;
using latchkey::fuzz::Require;

// The data of the calls. The buffer has guard bytes after the room that is passed to a call.
class Session {
 public:
  explicit Session(Input& input) : input_(input), connectivity_(input) {}

  void CallOnce() {
    const auto choice = input_.Take<std::uint8_t>();
    room_ = input_.Take<std::uint8_t>();
    choice_ = static_cast<HandleChoice>(choice / 32 % 4);
    nulls_ = choice < 128 ? 0U : input_.Take<std::uint8_t>();
    length_ = room_;
    refused_ = dead_ = false;
    buffer_.fill(kGuard);
    const int status = (this->*kCalls.at(choice % 32 % kCalls.size()))();
    Require(status >= LATCHKEY_OK && status < LATCHKEY_STATUS_COUNT);
    Require(!refused_ || status == LATCHKEY_BAD_ARGUMENT);
    Require(!dead_ || status != LATCHKEY_OK);
    Require(IsFilled(room_, buffer_.size(), kGuard));
    Require(latchkey_status_text(status) != nullptr);
  }

 private:
  using Call = int (Session::*)();

  // The pointers that set bits of the drawn byte make null. kInPlace makes the input the buffer.
  using Pointer = unsigned;
  static constexpr Pointer kBuffer = 1;
  static constexpr Pointer kLength = 2;
  static constexpr Pointer kInput = 4;
  static constexpr Pointer kKey = 8;
  static constexpr Pointer kPassword = 16;
  static constexpr Pointer kResult = 32;
  static constexpr Pointer kInPlace = 64;

  int OpenThread() { return Open(threads_); }
  int CloseThread() { return threads_.Close(Draw(threads_)); }
  int OpenCrypto() { return Open(cryptos_); }
  int CloseCrypto() { return cryptos_.Close(Draw(cryptos_)); }
  int OpenTimer() { return Open(timers_); }
  int CloseTimer() { return timers_.Close(Draw(timers_)); }
  int StartTimer() { return TimerAnswer(latchkey_timer_start(DrawUsed(timers_))); }

  int ReadTimer() {
    std::int32_t milliseconds = 0;
    return TimerAnswer(latchkey_timer_elapsed(DrawUsed(timers_), Result(milliseconds)));
  }

  int ReadError() {
    latchkey_error error{};
    return latchkey_error_read(DrawUsed(threads_), Result(error));
  }

  int AskForConnection() {
    std::int32_t connected = 7;
    const int status = latchkey_connection_exists(DrawUsed(threads_), Result(connected));
    Require(refused_ || connected == 0 || (connected == 1 && status == LATCHKEY_OK));
    return status;
  }

  int ReadVersion() {
    Require(latchkey_version()[0] != '\0');
    return LATCHKEY_OK;
  }

  int DescribeFailure() {
    const auto* const thread = DrawUsed(threads_);
    return Checked(latchkey_error_app_description(thread, Characters(), Length()));
  }

  int DescribeFault() {
    const auto* const thread = DrawUsed(threads_);
    return Checked(latchkey_error_rt_description(thread, Characters(), Length()));
  }

  int Encrypt() { return Transform(latchkey_encrypt); }
  int Decrypt() { return Transform(latchkey_decrypt); }

  int Hash() {
    DrawData();
    return Checked(
        latchkey_hash(DrawUsed(cryptos_), number_, InputData(), piece_.size(), Bytes(), Length()));
  }

  int FillRandom() {
    DrawData();
    const int status = latchkey_random_bytes(DrawUsed(cryptos_), Bytes(), room_);
    Require(status == LATCHKEY_OK || !IsGiven(kBuffer) || IsFilled(0, room_, 0));
    return status;
  }

  int CreateRandom() {
    DrawData();
    return Checked(latchkey_create_random(DrawUsed(cryptos_), flags_, number_, Bytes(), Length()));
  }

  int CreateSalt() {
    DrawData();
    return Checked(latchkey_create_salt(DrawUsed(cryptos_), flags_, number_, Bytes(), Length()));
  }

  int EncodeHex() {
    DrawData();
    return Checked(latchkey_hex_encode(InputData(), piece_.size(), Characters(), Length()));
  }

  int DecodeHex() {
    DrawData();
    return Checked(latchkey_hex_decode(reinterpret_cast<const char*>(InputData()), piece_.size(),
                                       Bytes(), Length()));
  }

  template <class Function>
  int Transform(Function function) {
    DrawData();
    const auto password = input_.TakePiece();
    const latchkey_key key{flags_,
                           number_ % 8,
                           input_.Take<std::int8_t>() % 8,
                           input_.Take<std::uint16_t>(),
                           OrNull(kPassword, password.data(), password.size()),
                           password.size()};
    return Checked(function(DrawUsed(cryptos_), OrNull(kKey, &key, 1), InputData(), piece_.size(),
                            Bytes(), Length()));
  }

  void DrawData() {
    flags_ = input_.Take<std::uint32_t>() % 8;
    number_ = input_.Take<std::int8_t>();
    piece_ = input_.TakePiece();
  }

  // A handle: open, or any number.
  template <class Handle>
  Handle* Draw(const Handles<Handle>& handles) {
    return handles.Draw(choice_, input_);
  }

  // The same for a call that fails unless the handle is open.
  template <class Handle>
  Handle* DrawUsed(const Handles<Handle>& handles) {
    Handle* const handle = Draw(handles);
    dead_ = !handles.IsOpen(handle);
    return handle;
  }

  template <class Handle>
  int Open(Handles<Handle>& handles) {
    if (IsGiven(kResult)) return handles.Open();
    refused_ = true;
    return handles.OpenWithoutResult();
  }

  [[nodiscard]] bool IsGiven(Pointer pointer) const { return (nulls_ & pointer) == 0; }

  // A pointer that may be null only if its length is 0.
  template <class Value>
  Value* OrNull(Pointer pointer, Value* value, std::size_t length) {
    if (IsGiven(pointer)) return value;
    refused_ = refused_ || length > 0;
    return nullptr;
  }

  template <class Value>
  Value* Result(Value& value) {
    return OrNull(kResult, &value, 1);
  }

  std::uint8_t* Bytes() { return OrNull(kBuffer, buffer_.data(), room_); }
  char* Characters() { return reinterpret_cast<char*>(Bytes()); }
  std::size_t* Length() { return OrNull(kLength, &length_, 1); }
  const std::uint8_t* InputData() {
    if (IsGiven(kInPlace)) return OrNull(kInput, piece_.data(), piece_.size());
    refused_ = refused_ || (!piece_.empty() && room_ > 0);
    return buffer_.data();
  }

  [[nodiscard]] bool IsFilled(std::size_t first, std::size_t last, std::uint8_t value) const {
    return std::all_of(buffer_.begin() + static_cast<std::ptrdiff_t>(first),
                       buffer_.begin() + static_cast<std::ptrdiff_t>(last),
                       [=](std::uint8_t byte) { return byte == value; });
  }

  // A call on an open timer cannot fail.
  [[nodiscard]] int TimerAnswer(int status) const {
    Require(dead_ || refused_ || status == LATCHKEY_OK);
    return status;
  }

  // The result of a call in the buffer and the length.
  [[nodiscard]] int Checked(int status) const {
    if (!IsGiven(kLength)) return status;
    if (status == LATCHKEY_OK) {
      Require(length_ <= room_);
    } else if (status == LATCHKEY_BUFFER_TOO_SMALL) {
      Require(length_ > room_ && IsFilled(0, room_, 0));
    } else {
      Require(length_ == 0 && IsFilled(0, room_, kGuard));
    }
    return status;
  }

  static constexpr std::uint8_t kGuard = 0xD7;
  static constexpr std::array<Call, 21> kCalls{&Session::OpenThread,    &Session::CloseThread,
                                               &Session::OpenCrypto,    &Session::CloseCrypto,
                                               &Session::ReadError,     &Session::DescribeFailure,
                                               &Session::DescribeFault, &Session::OpenTimer,
                                               &Session::Encrypt,       &Session::Decrypt,
                                               &Session::Hash,          &Session::FillRandom,
                                               &Session::CreateRandom,  &Session::CreateSalt,
                                               &Session::EncodeHex,     &Session::DecodeHex,
                                               &Session::CloseTimer,    &Session::StartTimer,
                                               &Session::ReadTimer,     &Session::AskForConnection,
                                               &Session::ReadVersion};

  Input& input_;
  DrawnConnectivity connectivity_;
  HandleNumbers numbers_;
  Handles<latchkey_thread> threads_{latchkey_thread_open, latchkey_thread_close, numbers_};
  Handles<latchkey_crypto> cryptos_{latchkey_crypto_open, latchkey_crypto_close, numbers_};
  Handles<latchkey_timer> timers_{latchkey_timer_open, latchkey_timer_close, numbers_};
  std::array<std::uint8_t, 272> buffer_{};

  // The arguments drawn for the current call, and the expected answer.
  HandleChoice choice_ = HandleChoice::Newest;
  Pointer nulls_ = 0;
  std::size_t room_ = 0;
  std::size_t length_ = 0;
  std::uint32_t flags_ = 0;
  std::int8_t number_ = 0;
  std::span<const std::uint8_t> piece_;
  bool refused_ = false;  // for a null pointer, or an input in the buffer
  bool dead_ = false;     // the handle is not open
};

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Input input(data, size);
  Session session(input);
  while (!input.IsEmpty()) session.CallOnce();
  return 0;
}
