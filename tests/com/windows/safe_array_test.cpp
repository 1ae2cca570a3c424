// Arrays whose size exists only in their descriptors.
#include "com/windows/safe_array.h"

#include <gtest/gtest.h>

#include <array>
#include <new>

namespace latchkey::com::test {
namespace {

// Four dimensions of 65,536 bytes each: together 2^64, which is 0 in a count of 64 bits, and two of
// them are 0 in one of 32.
class HugeArray {
 public:
  HugeArray() {
    SAFEARRAY& array = Get();
    array.cDims = kDimensions;
    array.cbElements = 1;
    array.pvData = bytes_.data();
    for (USHORT i = 0; i < kDimensions; ++i) array.rgsabound[i] = {0x10000, 0};
  }

  SAFEARRAY& Get() { return *reinterpret_cast<SAFEARRAY*>(storage_.data()); }
  [[nodiscard]] const std::array<std::uint8_t, 16>& Bytes() const { return bytes_; }

 private:
  static constexpr USHORT kDimensions = 4;
  static constexpr std::size_t kSize = sizeof(SAFEARRAY) + kDimensions * sizeof(SAFEARRAYBOUND);

  alignas(SAFEARRAY) std::array<unsigned char, kSize> storage_{};
  std::array<std::uint8_t, 16> bytes_{1, 2, 3};
};

TEST(SafeArrayTest, AnArrayThatIsLargerThanAnyMemoryIsRefused) {
  HugeArray huge;
  EXPECT_THROW(static_cast<void>(FromSafeArray(&huge.Get())), std::bad_alloc);
  EXPECT_THROW(SafeArrayAccess(&huge.Get()), std::bad_alloc);
}

TEST(SafeArrayTest, AnArrayThatIsLargerThanAnyMemoryIsNotWiped) {
  HugeArray huge;
  const auto before = huge.Bytes();
  WipeSafeArray(&huge.Get());
  EXPECT_EQ(huge.Bytes(), before);
}

}  // namespace
}  // namespace latchkey::com::test
