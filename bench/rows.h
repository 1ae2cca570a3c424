// Registration of measurements. Each family of rows has a file with a function that main.cpp calls.
#pragma once

#include <benchmark/benchmark.h>

#include <cstddef>
#include <functional>
#include <string>

#include "bench/peer.h"

namespace latchkey::bench {

inline constexpr std::size_t kBufferSize = std::size_t{16} << 20;

// Registers "work/peer" for each library that supports it. A repetition is one pass over one buffer
// of 16 MiB. Throws when a library's output differs from Latchkey's.
void AddRows(const std::string& work, const std::function<Workload(const Peer&)>& workloadOf);

void AddCipherRows();
void AddHashRows();

}  // namespace latchkey::bench
