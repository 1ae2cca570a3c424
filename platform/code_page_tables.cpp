#include "platform/code_page_tables.h"

#include <algorithm>

namespace latchkey::platform {
namespace {

constexpr std::array<std::uint32_t, 15> kKnown{1250, 1251, 1252, 1253, 1254, 1255, 1256, 1257,
                                               1258, 874,  932,  936,  949,  950,  65001};
constexpr std::array<std::uint32_t, 5> kMultiByte{932, 936, 949, 950, 65001};

}  // namespace

bool IsKnownCodePage(std::uint32_t number) noexcept {
  return std::ranges::find(kKnown, number) != kKnown.end();
}

bool IsMultiByte(std::uint32_t number) noexcept {
  return std::ranges::find(kMultiByte, number) != kMultiByte.end();
}

}  // namespace latchkey::platform
