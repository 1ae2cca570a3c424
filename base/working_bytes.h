// Bytes that nothing is left of.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <utility>

#include "base/secure_memory.h"

namespace latchkey {

// A number of bytes, wiped before their storage is let go. A few lie in the object itself, so that
// an operation on little data allocates nothing; more are allocated. New bytes are not initialised:
// memory that a call does not need is never touched.
class WorkingBytes {
 public:
  // So many bytes need no allocation.
  static constexpr std::size_t kShort = 128;

  // New bytes stay as they are, and a defaulted constructor would ask for initial ones.
  // NOLINTBEGIN(cppcoreguidelines-pro-type-member-init,modernize-use-equals-default)
  WorkingBytes() noexcept {}
  explicit WorkingBytes(std::size_t size) { Renew(size); }
  explicit WorkingBytes(std::span<const std::uint8_t> bytes) : WorkingBytes(bytes.size()) {
    std::copy(bytes.begin(), bytes.end(), data());
  }
  WorkingBytes(const WorkingBytes& other) : WorkingBytes(other.All()) {}
  WorkingBytes(WorkingBytes&& other) noexcept { Take(other); }
  // NOLINTEND(cppcoreguidelines-pro-type-member-init,modernize-use-equals-default)

  WorkingBytes& operator=(const WorkingBytes& other) {
    if (this != &other) *this = WorkingBytes(other);
    return *this;
  }
  WorkingBytes& operator=(WorkingBytes&& other) noexcept {
    if (this != &other) {
      Wipe();
      Take(other);
    }
    return *this;
  }

  ~WorkingBytes() { Wipe(); }

  [[nodiscard]] std::uint8_t* data() noexcept { return long_ ? long_.get() : short_.data(); }
  [[nodiscard]] const std::uint8_t* data() const noexcept {
    return long_ ? long_.get() : short_.data();
  }
  [[nodiscard]] std::size_t size() const noexcept { return size_; }
  [[nodiscard]] std::span<std::uint8_t> All() noexcept { return {data(), size_}; }
  [[nodiscard]] std::span<const std::uint8_t> All() const noexcept { return {data(), size_}; }

  // Wipes what is there and makes it `size` bytes, in the storage at hand where that is enough.
  void Renew(std::size_t size) {
    Wipe();
    size_ = touched_ = 0;
    if (size > capacity_) {
      long_ =
          std::make_unique_for_overwrite<std::uint8_t[]>(size);  // NOLINT(modernize-avoid-c-arrays)
      capacity_ = size;
    }
    size_ = touched_ = size;
  }

  // Keeps the first `size` bytes.
  void Cut(std::size_t size) noexcept { size_ = std::min(size, size_); }

  // Promises that nothing was written behind the first `touched` bytes since they were new: only
  // these are wiped.
  void Touched(std::size_t touched) noexcept { touched_ = std::min(touched, size_); }

  friend bool operator==(const WorkingBytes& left, const WorkingBytes& right) noexcept {
    return std::ranges::equal(left.All(), right.All());
  }

 private:
  void Wipe() noexcept { SecureWipe(data(), touched_); }

  // Of an object whose own bytes are wiped.
  void Take(WorkingBytes& other) noexcept {
    long_ = std::move(other.long_);
    capacity_ = std::exchange(other.capacity_, kShort);
    size_ = std::exchange(other.size_, 0);
    touched_ = std::exchange(other.touched_, 0);
    if (long_) return;
    std::copy_n(other.short_.begin(), touched_, short_.begin());
    SecureWipe(other.short_.data(), touched_);
  }

  std::array<std::uint8_t, kShort> short_;
  std::unique_ptr<std::uint8_t[]> long_;  // NOLINT(modernize-avoid-c-arrays)
  std::size_t capacity_ = kShort;
  std::size_t size_ = 0;
  std::size_t touched_ = 0;
};

}  // namespace latchkey
