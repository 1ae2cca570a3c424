// The C interface: any calls in any order on live objects of every kind and on NULL, with any
// settings and lengths, missing and overlapping memory, and records with any offsets.
#include <algorithm>
#include <array>
#include <vector>

#include "latchkey.h"
#include "tests/system/fuzz/input.h"

namespace {

using latchkey::fuzz::Input;
using latchkey::fuzz::Require;

constexpr std::uint8_t kGuard = 0xD7;

enum class Kind { None, Key, Stream, Hash };

struct Object {
  Kind kind = Kind::None;
  void* pointer = nullptr;
};

// The objects that are open, and the arguments of the current call.
class Session {
 public:
  explicit Session(Input& input) : input_(input) {}
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;
  ~Session() {
    while (!objects_.empty()) Require(Close(0, objects_.front().kind) == LATCHKEY_OK);
  }

  void CallOnce() {
    const auto which = input_.Take<std::uint8_t>();
    nulls_ = which < 192 ? 0U : input_.Take<std::uint8_t>();
    room_ = input_.Take<std::uint8_t>();
    length_ = room_;
    refused_ = false;
    buffer_.fill(kGuard);
    failure_ = LATCHKEY_FAILURE_INIT;
    if (IsSet(kFailureSize)) failure_.size = input_.Take<std::uint8_t>();
    const std::int32_t status = (this->*kCalls.at(which % kCalls.size()))();
    Require(status >= LATCHKEY_OK && status < LATCHKEY_STATUS_COUNT);
    Require(!refused_ || status != LATCHKEY_OK);
    Require(IsFilled(room_, buffer_.size(), kGuard));
  }

 private:
  using Call = std::int32_t (Session::*)();

  // The bits of the drawn byte.
  static constexpr unsigned kBuffer = 1;  // NULL
  static constexpr unsigned kLength = 2;
  static constexpr unsigned kInput = 4;
  static constexpr unsigned kInPlace = 8;  // the input is the buffer
  static constexpr unsigned kFailure = 16;
  static constexpr unsigned kFailureSize = 32;
  static constexpr unsigned kSize = 64;  // another size of a struct
  static constexpr unsigned kObject = 128;

  std::int32_t OpenKey() {
    const auto number = [&] { return input_.Take<std::int8_t>() % 8; };
    latchkey_settings settings = LATCHKEY_SETTINGS_INIT;
    settings.hash = number();
    settings.cipher = number();
    settings.provider = number() % 4;
    settings.key_bits = input_.Take<std::uint8_t>() % 20 * 8U;
    settings.rc2_effective_bits = input_.Take<std::uint8_t>() % 3 * 40U;
    settings.flags =
        input_.Take<std::uint8_t>() % 4 == 3 ? std::uint32_t{LATCHKEY_DEFAULT_PASSWORD} : 0U;
    settings.size += IsSet(kSize) ? 1U : 0U;
    const auto password = input_.TakePiece();
    latchkey_key* key = nullptr;
    const std::int32_t status =
        latchkey_key_open(&settings, InputData(password), password.size(), &key, Failure());
    return Opened(status, Kind::Key, key);
  }

  std::int32_t ShareKey() {
    const Object object = Draw(Kind::Key);
    const std::int32_t status = latchkey_key_share(static_cast<latchkey_key*>(object.pointer));
    if (status == LATCHKEY_OK) objects_.push_back(object);
    return status;
  }

  std::int32_t OpenStream() {
    auto* const key = static_cast<latchkey_key*>(Draw(Kind::Key).pointer);
    latchkey_stream* stream = nullptr;
    const std::int32_t status =
        latchkey_stream_open(key, input_.Take<std::uint8_t>() % 4, &stream, Failure());
    return Opened(status, Kind::Stream, stream);
  }

  std::int32_t OpenHash() {
    latchkey_hash* hash = nullptr;
    const std::int32_t status =
        latchkey_hash_open(input_.Take<std::int8_t>() % 8, &hash, Failure());
    return Opened(status, Kind::Hash, hash);
  }

  // As an object of any kind; it closes as its own only.
  std::int32_t CloseAny() {
    if (objects_.empty()) return latchkey_key_close(nullptr);
    const std::size_t which = input_.Take<std::uint8_t>() % objects_.size();
    const auto kind = static_cast<Kind>(1 + input_.Take<std::uint8_t>() % 3);
    const bool isOwn = kind == objects_[which].kind;
    const std::int32_t status = Close(which, kind);
    Require((status == LATCHKEY_OK) == isOwn);
    return status;
  }

  std::int32_t Encrypt() {
    const auto* const key = static_cast<const latchkey_key*>(Draw(Kind::Key).pointer);
    return IntoBuffer([&](auto... arguments) { return latchkey_encrypt(key, arguments...); });
  }
  std::int32_t Decrypt() {
    const auto* const key = static_cast<const latchkey_key*>(Draw(Kind::Key).pointer);
    return IntoBuffer([&](auto... arguments) { return latchkey_decrypt(key, arguments...); });
  }
  std::int32_t UpdateStream() {
    auto* const stream = static_cast<latchkey_stream*>(Draw(Kind::Stream).pointer);
    return IntoBuffer(
        [&](auto... arguments) { return latchkey_stream_update(stream, arguments...); });
  }
  std::int32_t FinishStream() {
    auto* const stream = static_cast<latchkey_stream*>(Draw(Kind::Stream).pointer);
    return Checked(latchkey_stream_finish(stream, Buffer(), Length(), Failure()));
  }
  std::int32_t UpdateHash() {
    auto* const hash = static_cast<latchkey_hash*>(Draw(Kind::Hash).pointer);
    const auto piece = input_.TakePiece();
    return latchkey_hash_update(hash, InputData(piece), piece.size(), Failure());
  }
  std::int32_t FinishHash() {
    auto* const hash = static_cast<latchkey_hash*>(Draw(Kind::Hash).pointer);
    return Checked(latchkey_hash_finish(hash, Buffer(), Length(), Failure()));
  }
  std::int32_t Digest() {
    const auto hash = input_.Take<std::int8_t>() % 8;
    return IntoBuffer([&](auto... arguments) { return latchkey_digest(hash, arguments...); });
  }
  std::int32_t EncodeHex() {
    return IntoBuffer([](auto* data, auto length, auto* output, auto... rest) {
      return latchkey_hex_encode(data, length, reinterpret_cast<char*>(output), rest...);
    });
  }
  std::int32_t DecodeHex() {
    return IntoBuffer([](auto* data, auto... rest) {
      return latchkey_hex_decode(reinterpret_cast<const char*>(data), rest...);
    });
  }
  std::int32_t FillRandom() { return latchkey_random_bytes(Buffer(), room_, Failure()); }
  std::int32_t FillSalt() {
    return latchkey_salt(reinterpret_cast<char*>(Buffer()), room_, Failure());
  }
  std::int32_t EncryptRecords() { return Transform(latchkey_encrypt_records); }
  std::int32_t DecryptRecords() { return Transform(latchkey_decrypt_records); }

  // Records with drawn offsets; the results lie in the buffer.
  template <class Function>
  std::int32_t Transform(Function function) {
    const auto* const key = static_cast<const latchkey_key*>(Draw(Kind::Key).pointer);
    latchkey_records records = DrawRecords();
    std::array<std::int64_t, 9> offsets{};
    std::array<std::int32_t, 8> statuses{};
    statuses.fill(-1);
    latchkey_results results = LATCHKEY_RESULTS_INIT;
    results.offset_size = input_.Take<std::uint8_t>() % 8 == 0 ? 4 : 8;
    results.offsets = IsSet(kLength) ? nullptr : offsets.data();
    results.data = Buffer();
    results.data_length = room_;
    results.statuses = input_.Take<std::uint8_t>() % 2 == 0 ? statuses.data() : nullptr;
    refused_ = refused_ || IsSet(kLength);
    const std::int32_t status =
        function(key, &records, input_.Take<std::uint8_t>() % 3, &results, Failure());
    if (status == LATCHKEY_OK) {
      Require(results.data_length <= room_ && results.failed <= records.count);
      const auto failed = std::count_if(statuses.begin(), statuses.end(),
                                        [](std::int32_t one) { return one > LATCHKEY_OK; });
      Require(results.statuses == nullptr || static_cast<std::size_t>(failed) == results.failed);
    } else {
      Require(IsFilled(0, room_, kGuard));
    }
    return status;
  }

  std::int32_t Identify() {
    const latchkey_records records = DrawRecords();
    const auto password = input_.TakePiece();
    std::array<latchkey_candidate, 3> candidates{};
    std::size_t count = input_.Take<std::uint8_t>() % 4;
    const std::size_t room = count;
    const std::int32_t status = latchkey_identify(&records, InputData(password), password.size(),
                                                  sizeof candidates[0] + (IsSet(kSize) ? 1 : 0),
                                                  candidates.data(), &count, Failure());
    Require(status == LATCHKEY_OK ? count <= room : count == 0);
    for (std::size_t i = count; i < candidates.size(); ++i) {
      Require(candidates[i].settings.size == 0);
    }
    return status;
  }

  // Up to 8 records whose offsets are mostly good.
  latchkey_records DrawRecords() {
    const auto piece = input_.TakePiece();
    data_.assign(piece.begin(), piece.end());
    latchkey_records records = LATCHKEY_RECORDS_INIT;
    records.offset_size = input_.Take<std::uint8_t>() % 2 == 0 ? 4 : 8;
    records.count = input_.Take<std::uint8_t>() % 9;
    std::int64_t offset = 0;
    for (std::size_t i = 0; i <= records.count; ++i) {
      const auto step = input_.Take<std::int8_t>();
      if (step > 120) {
        offset += (step - 124) * 100;  // descends or leaves the data
      } else {
        offset = std::min(offset + std::max(step % 32, 0), std::max(offset, std::ssize(data_)));
      }
      narrow_.at(i) = static_cast<std::int32_t>(offset);
      wide_.at(i) = offset;
    }
    records.offsets = records.offset_size == 4 ? static_cast<const void*>(narrow_.data())
                                               : static_cast<const void*>(wide_.data());
    records.data = InputData(data_);
    records.data_length = data_.size();
    if (IsSet(kSize)) --records.size;
    refused_ = refused_ || IsSet(kSize);
    return records;
  }

  // A live object of the kind, or of another one, or NULL; these are refused.
  Object Draw(Kind kind) {
    const auto which = input_.Take<std::uint8_t>();
    const Object object =
        IsSet(kObject) || objects_.empty() ? Object{} : objects_[which % objects_.size()];
    refused_ = refused_ || object.kind != kind;
    return object;
  }

  std::int32_t Opened(std::int32_t status, Kind kind, void* pointer) {
    Require((pointer != nullptr) == (status == LATCHKEY_OK));
    if (pointer != nullptr) objects_.push_back({kind, pointer});
    return status;
  }

  std::int32_t Close(std::size_t which, Kind kind) {
    void* const pointer = objects_[which].pointer;
    const std::int32_t status =
        kind == Kind::Key      ? latchkey_key_close(static_cast<latchkey_key*>(pointer))
        : kind == Kind::Stream ? latchkey_stream_close(static_cast<latchkey_stream*>(pointer))
                               : latchkey_hash_close(static_cast<latchkey_hash*>(pointer));
    if (status == LATCHKEY_OK) {
      objects_.erase(objects_.begin() + static_cast<std::ptrdiff_t>(which));
    }
    return status;
  }

  template <class Function>
  std::int32_t IntoBuffer(Function&& call) {
    const auto piece = input_.TakePiece();
    return Checked(call(InputData(piece), piece.size(), Buffer(), Length(), Failure()));
  }

  // What holds for every output in the buffer.
  [[nodiscard]] std::int32_t Checked(std::int32_t status) const {
    if (IsSet(kLength)) return status;
    if (status == LATCHKEY_OK) {
      Require(length_ <= room_);
      return status;
    }
    Require(status == LATCHKEY_BUFFER_TOO_SMALL ? length_ > room_ : length_ == 0);
    Require(std::all_of(buffer_.begin(), buffer_.end(),
                        [](std::uint8_t byte) { return byte == kGuard || byte == 0; }));
    return status;
  }

  [[nodiscard]] bool IsSet(unsigned bit) const { return (nulls_ & bit) != 0; }

  std::uint8_t* Buffer() {
    if (!IsSet(kBuffer)) return buffer_.data();
    refused_ = refused_ || room_ > 0;
    return nullptr;
  }
  std::size_t* Length() {
    refused_ = refused_ || IsSet(kLength);
    return IsSet(kLength) ? nullptr : &length_;
  }
  const std::uint8_t* InputData(std::span<const std::uint8_t> data) {
    if (IsSet(kInPlace) && data.size() <= buffer_.size()) return buffer_.data();
    if (!IsSet(kInput)) return data.data();
    refused_ = refused_ || !data.empty();
    return nullptr;
  }
  latchkey_failure* Failure() {
    if (IsSet(kFailure)) return nullptr;
    refused_ = refused_ || failure_.size != sizeof failure_;
    return &failure_;
  }

  [[nodiscard]] bool IsFilled(std::size_t first, std::size_t last, std::uint8_t value) const {
    return std::all_of(buffer_.begin() + static_cast<std::ptrdiff_t>(first),
                       buffer_.begin() + static_cast<std::ptrdiff_t>(last),
                       [=](std::uint8_t byte) { return byte == value; });
  }

  static constexpr std::array<Call, 19> kCalls{
      &Session::OpenKey,        &Session::Encrypt,        &Session::Decrypt,
      &Session::OpenStream,     &Session::UpdateStream,   &Session::FinishStream,
      &Session::OpenHash,       &Session::UpdateHash,     &Session::FinishHash,
      &Session::EncryptRecords, &Session::DecryptRecords, &Session::Identify,
      &Session::Digest,         &Session::FillRandom,     &Session::FillSalt,
      &Session::EncodeHex,      &Session::DecodeHex,      &Session::ShareKey,
      &Session::CloseAny};

  Input& input_;
  std::vector<Object> objects_;
  std::array<std::uint8_t, 272> buffer_{};
  std::vector<std::uint8_t> data_;
  std::array<std::int32_t, 9> narrow_{};
  std::array<std::int64_t, 9> wide_{};
  latchkey_failure failure_{};
  unsigned nulls_ = 0;
  std::size_t room_ = 0;
  std::size_t length_ = 0;
  bool refused_ = false;
};

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Input input(data, size);
  Session session(input);
  for (int calls = 0; calls < 64 && !input.IsEmpty(); ++calls) session.CallOnce();
  return 0;
}
