// How a measurement enters the program. A family of rows is a file that registers its rows from a
// function named in main.cpp.
#pragma once

#include <benchmark/benchmark.h>

#include <cstddef>
#include <string>

#include "bench/peer.h"

namespace latchkey::bench {

inline constexpr std::size_t kBufferSize = std::size_t{16} << 20;
inline constexpr int kRepetitions = 9;

// Registers "work/peer": nine runs through one buffer of 16 MiB, of which the median counts, in
// CPU time. Does nothing for an empty function.
void AddRow(const std::string& work, const Peer& peer, Work function);

void AddCipherRows();
void AddHashRows();

}  // namespace latchkey::bench
