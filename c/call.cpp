#include "c/call.h"

#include <algorithm>
#include <string_view>

namespace latchkey::c {
namespace {

constexpr std::int32_t StatusOf(const CheckSite& check) noexcept {
  switch (check.number) {
    case check::kEncryptHashType.number:
      return LATCHKEY_BAD_HASH;
    case check::kEncryptCipherType.number:
    case check::kDecryptCipherType.number:
      return LATCHKEY_BAD_CIPHER;
    case check::kEncryptProvider.number:
      return LATCHKEY_NO_PROVIDER;
    case check::kEncryptCipher.number:
    case check::kDecryptCipher.number:
      return LATCHKEY_CIPHER_FAILED;
    case check::kHexLength.number:
      return LATCHKEY_BAD_HEX;
    default:
      return LATCHKEY_KEY_FAILED;
  }
}

void Fill(latchkey_failure& failure, std::int32_t status, std::int32_t type, std::int32_t location,
          std::int32_t number, const auto& text) noexcept {
  failure = LATCHKEY_FAILURE_INIT;
  failure.status = status;
  failure.type = type;
  failure.location = location;
  failure.number = number;
  const std::size_t length = std::min<std::size_t>(text.size(), sizeof failure.text - 1);
  std::transform(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(length), failure.text,
                 [](auto character) { return static_cast<char>(character); });
}

}  // namespace

Outcome::Outcome(const CheckSite& failed) noexcept : Outcome(StatusOf(failed), &failed) {}

std::int32_t Report(latchkey_failure* failure, const Outcome& outcome) noexcept {
  if (failure == nullptr) return outcome.status;
  if (outcome.status == LATCHKEY_OK) {
    *failure = LATCHKEY_FAILURE_INIT;
  } else if (outcome.check == nullptr) {
    Fill(*failure, outcome.status, 0, 0, 0, std::string_view(latchkey_status_text(outcome.status)));
  } else {
    Fill(*failure, outcome.status, kApplicationFailure, outcome.check->location,
         outcome.check->number, outcome.check->text);
  }
  return outcome.status;
}

std::int32_t Report(latchkey_failure* failure, const Fault& fault, const TrapSite& trap) noexcept {
  const bool noMemory = fault.Number() == static_cast<std::int32_t>(FaultNumber::OutOfMemory);
  const std::int32_t status = noMemory ? LATCHKEY_NO_MEMORY : LATCHKEY_FAULT;
  if (failure != nullptr) {
    Fill(*failure, status, kRunTimeFailure, trap.location, fault.Number(), fault.Description());
  }
  return status;
}

bool Memory::IsGood() const noexcept {
  return length_ == 0 || (data_ != nullptr && length_ <= PTRDIFF_MAX);
}

bool Memory::Overlaps(const Memory& other) const noexcept {
  if (length_ == 0 || other.length_ == 0) return false;
  const auto first = reinterpret_cast<std::uintptr_t>(data_);
  const auto second = reinterpret_cast<std::uintptr_t>(other.data_);
  return first < second ? second - first < length_ : first - second < other.length_;
}

bool Output::IsGood(std::initializer_list<Memory> inputs) const noexcept {
  const Memory buffer(data_, room_);
  return length_ != nullptr && buffer.IsGood() &&
         std::ranges::all_of(inputs, [&](const Memory& input) {
           return input.IsGood() && !buffer.Overlaps(input);
         });
}

std::int32_t Output::Finish(std::size_t length) noexcept {
  *length_ = length;
  return LATCHKEY_OK;
}

std::int32_t Output::TooSmall(std::size_t needed) noexcept {
  *length_ = needed;
  return LATCHKEY_BUFFER_TOO_SMALL;
}

std::int32_t Output::Deliver(InputBytes result) noexcept {
  if (result.size() > room_) return TooSmall(result.size());
  std::copy(result.begin(), result.end(), data_);
  return Finish(result.size());
}

}  // namespace latchkey::c
