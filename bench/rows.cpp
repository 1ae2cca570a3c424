#include "bench/rows.h"

#include <utility>
#include <vector>

namespace latchkey::bench {
namespace {

// More than one batch of the widest kernel, and not a multiple of one.
constexpr std::size_t kSampleSize = 20'008;

// Shared by all rows; its contents do not affect the time.
std::span<std::uint8_t> Buffer() {
  static std::vector<std::uint8_t> buffer(kBufferSize, 0x5A);
  return buffer;
}

// The sample after two calls, the second on the output of the first.
std::vector<std::uint8_t> OutputOf(const Workload& function) {
  std::vector<std::uint8_t> sample(kSampleSize);
  for (std::size_t i = 0; i < sample.size(); ++i) {
    sample[i] = static_cast<std::uint8_t>(i * i >> 3);
  }
  function(sample);
  function(sample);
  return sample;
}

void AddRow(const std::string& name, Workload function) {
  const auto run = [function = std::move(function)](benchmark::State& state) {
    const std::span<std::uint8_t> buffer = Buffer();
    for ([[maybe_unused]] auto turn : state) {
      function(buffer);
      benchmark::ClobberMemory();
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(buffer.size()));
  };
  benchmark::RegisterBenchmark(name.c_str(), run)->Iterations(1)->Unit(benchmark::kMillisecond);
}

}  // namespace

void AddRows(const std::string& work, const std::function<Workload(const Peer&)>& workloadOf) {
  std::vector<std::uint8_t> expected;
  for (const Peer& peer : Peers()) {
    Workload function = workloadOf(peer);
    if (!function) continue;
    const std::string name = work + "/" + peer.name;
    const std::vector<std::uint8_t> made = OutputOf(function);
    if (expected.empty()) expected = made;
    if (made != expected) throw std::runtime_error(name + " differs from Latchkey's output");
    AddRow(name, std::move(function));
  }
}

}  // namespace latchkey::bench
