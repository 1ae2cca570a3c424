#include "cli/ciphertext_input.h"

#include <algorithm>

#include "crypto/text_codec.h"

namespace latchkey::cli {

std::size_t CiphertextInput::Read(std::span<std::uint8_t> bytes) {
  std::size_t count = 0;
  if (!hasEnded_) {
    count = reader_(bytes);
    length_ += count;
    hasEnded_ = count < bytes.size();
    if (hasEnded_) missing_ = settings_.MissingBytes(length_);
  }
  if (spaces_ == Spaces::Keep) return count;
  const std::size_t added = std::min(bytes.size() - count, missing_ - restored_);
  std::fill_n(bytes.begin() + static_cast<std::ptrdiff_t>(count), added, kSpace);
  restored_ += added;
  return count + added;
}

std::string CiphertextInput::LengthHint() const {
  if (missing_ == 0 || spaces_ == Spaces::Restore) return {};
  return "the ciphertext has " + std::to_string(length_) +
         " bytes, not a multiple of 8: a client may have cut trailing bytes of value 20 "
         "(hexadecimal), which --restore-spaces puts back";
}

}  // namespace latchkey::cli
