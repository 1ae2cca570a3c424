#include "cli/records/record_format.h"

#include <algorithm>
#include <cstring>

namespace latchkey::cli {

std::size_t RecordFormat::LengthOfWhole(ByteSpan bytes) const noexcept {
  const auto last = std::find(bytes.rbegin(), bytes.rend(), '\n');
  return static_cast<std::size_t>(bytes.rend() - last);
}

std::size_t RecordFormat::ReadHeader(ByteSpan /*bytes*/, WipedBytes& /*output*/) { return 0; }

std::size_t Find(ByteSpan bytes, std::uint8_t byte, std::size_t begin) noexcept {
  if (begin >= bytes.size()) return bytes.size();
  const void* const found = std::memchr(&bytes[begin], byte, bytes.size() - begin);
  if (found == nullptr) return bytes.size();
  return static_cast<std::size_t>(static_cast<const std::uint8_t*>(found) - bytes.data());
}

LineEnd EndOfLine(ByteSpan bytes, std::size_t begin) noexcept {
  const std::size_t end = Find(bytes, '\n', begin);
  const bool hasReturn = end > begin && bytes[end - 1] == '\r';
  return {end - (hasReturn ? 1 : 0), std::min(end + 1, bytes.size())};
}

void Append(ByteSpan bytes, WipedBytes& to) { to.insert(to.end(), bytes.begin(), bytes.end()); }

}  // namespace latchkey::cli
