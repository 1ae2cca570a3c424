// One key stream, added to each of many messages.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace latchkey::provider {

inline constexpr std::size_t kStreamStep = 16;  // bytes that are added at once

// The messages follow one another in `messages`, which they fill, and their results from `results`
// on. `stream` has the length of the longest message, rounded up to whole steps.
void AddStreamToEach(const std::uint8_t* stream, std::span<const std::uint8_t> messages,
                     std::span<const std::uint32_t> lengths, std::uint8_t* results) noexcept;

}  // namespace latchkey::provider
