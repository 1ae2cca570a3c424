#include "bench/rows.h"

#include <utility>
#include <vector>

namespace latchkey::bench {
namespace {

// Shared by all rows; what it holds does not matter to any of them.
std::span<std::uint8_t> Buffer() {
  static std::vector<std::uint8_t> buffer(kBufferSize, 0x5A);
  return buffer;
}

}  // namespace

void AddRow(const std::string& work, const Peer& peer, Work function) {
  if (!function) return;
  const auto run = [function = std::move(function)](benchmark::State& state) {
    const std::span<std::uint8_t> buffer = Buffer();
    for ([[maybe_unused]] auto turn : state) {
      function(buffer);
      benchmark::ClobberMemory();
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(buffer.size()));
  };
  benchmark::RegisterBenchmark((work + "/" + peer.name).c_str(), run)
      ->Iterations(1)
      ->Repetitions(kRepetitions)
      ->ReportAggregatesOnly()
      ->Unit(benchmark::kMillisecond);
}

}  // namespace latchkey::bench
