// What happens to the bytes of fields, many at a time.
#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include "base/wiped_buffer.h"
#include "cli/failure.h"
#include "crypto/engine/derived_key.h"
#include "crypto/engine/record_batch.h"

namespace latchkey::cli {

// Values of a column, one after another. Its memory is kept from block to block.
struct ColumnResult {
  InlineBytes data;
  std::vector<std::int64_t> offsets;   // one more than values
  std::vector<std::int32_t> statuses;  // 0, or the value has a failure

  void Renew(std::size_t count, std::size_t room);
  [[nodiscard]] std::span<const std::uint8_t> operator[](std::size_t i) const noexcept {
    return data.All().subspan(static_cast<std::size_t>(offsets[i]),
                              static_cast<std::size_t>(offsets[i + 1] - offsets[i]));
  }
};

// Used by one thread.
class ColumnTransform {
 public:
  ColumnTransform() = default;
  ColumnTransform(const ColumnTransform&) = delete;
  ColumnTransform& operator=(const ColumnTransform&) = delete;
  virtual ~ColumnTransform() = default;

  virtual void Run(const Records& values, ColumnResult& result) = 0;

  // What a value of that length lacks at its end; 0 for nothing.
  [[nodiscard]] virtual std::size_t MissingBytes(std::size_t length) const noexcept;

  // Whether a value of no bytes is one, and not left as it is.
  [[nodiscard]] virtual bool TakesEmpty() const noexcept { return true; }

  // The failure of a value.
  [[nodiscard]] virtual Failure FailureOfValue() const = 0;
};

// Encryption or decryption. The key must outlive it. A ciphertext of no bytes is left as it is.
[[nodiscard]] std::unique_ptr<ColumnTransform> MakeCipherTransform(const DerivedKey& key,
                                                                   CipherDirection direction);

// The digest by a hash number of the component.
[[nodiscard]] std::unique_ptr<ColumnTransform> MakeDigestTransform(std::int16_t hash);

}  // namespace latchkey::cli
