// A fixed-point number with four decimal places: a signed 64-bit count of ten-thousandths.
#pragma once

#include <cstdint>

namespace latchkey {

// Every operation raises Overflow if its result is outside ±922,337,203,685,477.5807.
class Currency {
 public:
  constexpr Currency() noexcept = default;

  // Rounds the exact value of the Double to four decimals, half to even. Raises
  // InvalidProcedureCall for "not a number".
  [[nodiscard]] static Currency FromDouble(double value);
  [[nodiscard]] static Currency FromWhole(std::int64_t value);

  // A count of bytes. Its 64 bits are read as a signed number, so the largest counts are negative.
  [[nodiscard]] static Currency FromBytes(std::uint64_t value);

  [[nodiscard]] double ToDouble() const noexcept;

  friend Currency operator+(Currency a, Currency b);
  friend Currency operator-(Currency a, Currency b);
  friend bool operator==(Currency, Currency) noexcept = default;

 private:
  explicit constexpr Currency(std::int64_t scaled) noexcept : scaled_(scaled) {}

  std::int64_t scaled_ = 0;
};

}  // namespace latchkey
