// Data in a scratch file that is written once and then read any number of times.
#pragma once

#include <cstdint>
#include <cstring>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

#include "cli/platform/scratch_file.h"

namespace latchkey::cli {

// Values in a scratch file, through a buffer of fixed size. Raises FileError if the system has no
// room. Write from one thread; after Finish, each thread may have a SpoolReader.
class Spool {
 public:
  template <class Value>
  void Put(const Value& value) {
    static_assert(std::is_trivially_copyable_v<Value>);
    PutBytes({reinterpret_cast<const std::uint8_t*>(&value), sizeof value});
  }
  void PutText(std::string_view text);

  // Makes the values that were put so far readable.
  void Finish();

  // The offset of the next value.
  [[nodiscard]] std::uint64_t Size() const noexcept { return file_.Size() + buffer_.size(); }

 private:
  friend class SpoolReader;

  void PutBytes(std::span<const std::uint8_t> bytes);

  ScratchFile file_;
  std::vector<std::uint8_t> buffer_;
};

// Reads the values in the order in which they were put. The spool must outlive it.
class SpoolReader {
 public:
  explicit SpoolReader(const Spool& spool, std::uint64_t offset = 0) noexcept
      : spool_(spool), offset_(offset) {}

  // False at the end.
  template <class Value>
  [[nodiscard]] bool Get(Value& value) {
    return GetBytes({reinterpret_cast<std::uint8_t*>(&value), sizeof value});
  }
  [[nodiscard]] bool GetText(std::string& text);

  // The offset of the next value.
  [[nodiscard]] std::uint64_t Offset() const noexcept { return offset_; }

 private:
  [[nodiscard]] bool GetBytes(std::span<std::uint8_t> bytes);

  const Spool& spool_;
  std::uint64_t offset_;
  std::uint64_t bufferOffset_ = 0;
  std::vector<std::uint8_t> buffer_;
};

}  // namespace latchkey::cli
