// How a measurement enters the program. A family of rows is a file that registers its rows from a
// function named in main.cpp.
#pragma once

#include <benchmark/benchmark.h>

#include <cstddef>
#include <functional>
#include <string>

#include "bench/peer.h"

namespace latchkey::bench {

inline constexpr std::size_t kBufferSize = std::size_t{16} << 20;

// Registers "work/peer" for each library that has it: a repetition is one run through one buffer of
// 16 MiB. Throws when a library does not make the same bytes as Latchkey.
void AddRows(const std::string& work, const std::function<Work(const Peer&)>& workOf);

void AddCipherRows();
void AddHashRows();

}  // namespace latchkey::bench
