// How much a piece of data looks like something that people keep, rather than like chance.
#pragma once

#include <cstdint>
#include <span>

namespace latchkey::cli {

// The base-2 logarithm of how much more probable the data is as kept data than as random bytes:
// what a wrong key makes is random, so 10 stands for a thousand times. Kept data is taken to be
// half the time English text (each byte by its frequency there), a quarter of the time anything in
// which some bytes are more frequent than others (each byte by its frequency so far, after
// Krichevsky and Trofimov), and a quarter of the time bytes as random as chance (compressed data).
// 0 for no data; never below -2.
[[nodiscard]] double TextEvidence(std::span<const std::uint8_t> data);

}  // namespace latchkey::cli
