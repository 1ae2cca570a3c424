// ASCII characters in the 128-bit vectors of NEON, which every ARM64 CPU has. A step is 64
// elements, whose highest value shows whether all are ASCII.
#include <arm_neon.h>

#include "base/kernels/ascii_text.h"

namespace latchkey {
namespace {

constexpr std::size_t kStep = AsciiText::kStep;
constexpr std::size_t kVector = sizeof(uint8x16_t);

// The bits that are set in any of the characters.
uint16x8_t Union(const uint16x8x4_t& half) noexcept {
  return vorrq_u16(vorrq_u16(half.val[0], half.val[1]), vorrq_u16(half.val[2], half.val[3]));
}

void StoreNarrowed(std::uint8_t* to, const uint16x8x4_t& half) noexcept {
  vst1q_u8(to, vcombine_u8(vmovn_u16(half.val[0]), vmovn_u16(half.val[1])));
  vst1q_u8(to + kVector, vcombine_u8(vmovn_u16(half.val[2]), vmovn_u16(half.val[3])));
}

std::size_t Narrow(const char16_t* characters, std::size_t count, std::uint8_t* bytes) noexcept {
  std::size_t done = 0;
  for (; count - done >= kStep; done += kStep) {
    const auto* const from = reinterpret_cast<const std::uint16_t*>(characters + done);
    const uint16x8x4_t first = vld1q_u16_x4(from);
    const uint16x8x4_t second = vld1q_u16_x4(from + kStep / 2);
    if (vmaxvq_u16(vorrq_u16(Union(first), Union(second))) >= 0x80) break;
    StoreNarrowed(bytes + done, first);
    StoreNarrowed(bytes + done + kStep / 2, second);
  }
  return done;
}

std::size_t Widen(const std::uint8_t* bytes, std::size_t count, char16_t* characters) noexcept {
  std::size_t done = 0;
  for (; count - done >= kStep; done += kStep) {
    const uint8x16x4_t step = vld1q_u8_x4(bytes + done);
    const uint8x16_t all =
        vorrq_u8(vorrq_u8(step.val[0], step.val[1]), vorrq_u8(step.val[2], step.val[3]));
    if (vmaxvq_u8(all) >= 0x80) break;
    auto* const to = reinterpret_cast<std::uint16_t*>(characters + done);
    for (std::size_t i = 0; i < 4; ++i) {
      vst1q_u16(to + kVector * i, vmovl_u8(vget_low_u8(step.val[i])));
      vst1q_u16(to + kVector * i + 8, vmovl_high_u8(step.val[i]));
    }
  }
  return done;
}

}  // namespace

constinit const AsciiText kAsciiTextNeon{&Narrow, &Widen};

}  // namespace latchkey
