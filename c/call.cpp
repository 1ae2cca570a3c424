#include "c/call.h"

#include <algorithm>

namespace latchkey {
namespace {

bool Overlap(InputBytes left, InputBytes right) noexcept {
  const auto first = reinterpret_cast<std::uintptr_t>(left.data());
  const auto second = reinterpret_cast<std::uintptr_t>(right.data());
  if (left.empty() || right.empty()) return false;
  return first < second ? second - first < left.size() : first - second < right.size();
}

}  // namespace

int StatusOf(const Fault& fault) noexcept {
  switch (static_cast<FaultNumber>(fault.Number())) {
    case FaultNumber::ObjectNotSet:
      return LATCHKEY_NO_RECORD;
    case FaultNumber::OutOfMemory:
      return LATCHKEY_NO_MEMORY;
    default:
      return LATCHKEY_FAULT;
  }
}

int StatusOfNumber(std::int32_t number) noexcept {
  switch (number) {
    case check::kEncryptHashType.number:
      return LATCHKEY_BAD_HASH;
    case check::kEncryptCipherType.number:
    case check::kDecryptCipherType.number:
      return LATCHKEY_BAD_CIPHER;
    case check::kEncryptHash.number:
    case check::kEncryptHashData.number:
    case check::kEncryptKey.number:
      return LATCHKEY_KEY_FAILED;
    case check::kEncryptCipher.number:
    case check::kDecryptCipher.number:
      return LATCHKEY_CIPHER_FAILED;
    case check::kHexLength.number:
      return LATCHKEY_BAD_HEX;
    default:
      return LATCHKEY_NO_PROVIDER;
  }
}

int StatusOfRecord() {
  const clsErrorObject& record = ErrorRecord();
  if (!record.ErrorExists()) return LATCHKEY_OK;
  return record.ErrorType() == kRunTimeFailure
             ? StatusOf(Fault(static_cast<FaultNumber>(record.RTErrorNumber())))
             : StatusOfNumber(record.AppErrorNumber());
}

int Refuse(const CheckSite& site) {
  RecordApplicationFailure(site);
  return StatusOfNumber(site.number);
}

int Output::Prepare(std::initializer_list<Input> inputs) noexcept {
  if (length_ == nullptr) return LATCHKEY_BAD_ARGUMENT;
  room_ = *length_;
  *length_ = 0;
  if (data_ == nullptr && room_ > 0) return LATCHKEY_BAD_ARGUMENT;
  const InputBytes buffer(data_, room_);
  for (const Input& input : inputs) {
    if (!input.IsGood() || Overlap(buffer, input.Bytes())) return LATCHKEY_BAD_ARGUMENT;
  }
  return LATCHKEY_OK;
}

bool Output::HasRoom(std::size_t needed) noexcept {
  *length_ = needed;
  if (needed <= room_) return true;
  std::fill_n(data_, room_, std::uint8_t{0});
  return false;
}

int Output::Deliver(InputBytes result) noexcept {
  if (!HasRoom(result.size())) return LATCHKEY_BUFFER_TOO_SMALL;
  std::copy(result.begin(), result.end(), data_);
  return LATCHKEY_OK;
}

int Output::DeliverText(std::string_view text) noexcept {
  if (!HasRoom(text.size() + 1)) return LATCHKEY_BUFFER_TOO_SMALL;
  *std::copy(text.begin(), text.end(), data_) = 0;
  return LATCHKEY_OK;
}

}  // namespace latchkey
