#include "cli/spool.h"

#include <algorithm>

namespace latchkey::cli {
namespace {

constexpr std::size_t kBufferSize = std::size_t{1} << 16;

}  // namespace

void Spool::PutText(std::string_view text) {
  Put(std::uint64_t{text.size()});
  PutBytes({reinterpret_cast<const std::uint8_t*>(text.data()), text.size()});
}

void Spool::PutBytes(std::span<const std::uint8_t> bytes) {
  buffer_.insert(buffer_.end(), bytes.begin(), bytes.end());
  if (buffer_.size() >= kBufferSize) Finish();
}

void Spool::Finish() {
  file_.Append(buffer_);
  buffer_.clear();
}

bool SpoolReader::GetText(std::string& text) {
  std::uint64_t size = 0;
  if (!Get(size)) return false;
  text.resize(static_cast<std::size_t>(size));
  return GetBytes({reinterpret_cast<std::uint8_t*>(text.data()), text.size()});
}

bool SpoolReader::GetBytes(std::span<std::uint8_t> bytes) {
  while (!bytes.empty()) {
    if (offset_ >= bufferOffset_ + buffer_.size()) {
      buffer_.resize(kBufferSize);
      buffer_.resize(spool_.file_.ReadAt(offset_, buffer_));
      bufferOffset_ = offset_;
      if (buffer_.empty()) return false;
    }
    const auto start = static_cast<std::size_t>(offset_ - bufferOffset_);
    const std::size_t count = std::min(bytes.size(), buffer_.size() - start);
    std::memcpy(bytes.data(), buffer_.data() + start, count);
    bytes = bytes.subspan(count);
    offset_ += count;
  }
  return true;
}

}  // namespace latchkey::cli
