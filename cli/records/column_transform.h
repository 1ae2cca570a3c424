// Encrypts, decrypts or hashes the values of many fields at a time.
#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include "base/wiped_buffer.h"
#include "cli/cipher_key.h"
#include "cli/failure.h"
#include "crypto/engine/record_batch.h"

namespace latchkey::cli {

// The results for the values of a column, one after another. The memory is reused for each block.
struct ColumnResult {
  InlineBytes data;
  std::vector<std::int64_t> offsets;   // one more than the number of values
  std::vector<std::int32_t> statuses;  // other than 0: the value failed

  // Makes room for `count` values with `room` bytes together.
  void Renew(std::size_t count, std::size_t room);
  [[nodiscard]] std::span<const std::uint8_t> operator[](std::size_t i) const noexcept {
    return data.All().subspan(static_cast<std::size_t>(offsets[i]),
                              static_cast<std::size_t>(offsets[i + 1] - offsets[i]));
  }
};

// Transforms one group of values after another. Used by one thread.
class ColumnTransform {
 public:
  ColumnTransform() = default;
  ColumnTransform(const ColumnTransform&) = delete;
  ColumnTransform& operator=(const ColumnTransform&) = delete;
  virtual ~ColumnTransform() = default;

  virtual void Run(const Records& values, ColumnResult& result) = 0;

  // The number of bytes that a value of this length lacks at its end.
  [[nodiscard]] virtual std::size_t MissingBytes(std::size_t length) const noexcept;

  // Whether an empty value is transformed rather than left unchanged.
  [[nodiscard]] virtual bool TakesEmpty() const noexcept { return true; }

  // The failure to report for a value that failed.
  [[nodiscard]] virtual Failure FailureOfValue() const = 0;
};

// Makes a transform that encrypts or decrypts. The key must outlive it. An empty ciphertext is left
// unchanged.
[[nodiscard]] std::unique_ptr<ColumnTransform> MakeCipherTransform(const ReadyKey& key,
                                                                   CipherDirection direction);

// Makes a transform whose results are digests. `hash` is a number of the component.
[[nodiscard]] std::unique_ptr<ColumnTransform> MakeDigestTransform(std::int16_t hash);

}  // namespace latchkey::cli
