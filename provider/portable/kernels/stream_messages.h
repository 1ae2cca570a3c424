// Adds one key stream, by exclusive or, to each of many messages.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace latchkey::provider {

inline constexpr std::size_t kStreamStep = 16;  // bytes that are added at once

// `messages` consists of the messages of these lengths, one after another; so do the results, from
// `results` on. `stream` has at least the length of the longest message, rounded up to whole steps.
void AddStreamToEach(const std::uint8_t* stream, std::span<const std::uint8_t> messages,
                     std::span<const std::uint32_t> lengths, std::uint8_t* results) noexcept;

}  // namespace latchkey::provider
