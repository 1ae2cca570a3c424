#include "bench/rows.h"

#include <utility>
#include <vector>

namespace latchkey::bench {
namespace {

// More than the widest kernel works on at once, and no multiple of that.
constexpr std::size_t kSampleSize = 20'008;

// Shared by all rows; what it holds does not matter to any of them.
std::span<std::uint8_t> Buffer() {
  static std::vector<std::uint8_t> buffer(kBufferSize, 0x5A);
  return buffer;
}

// What two calls make of a sample, the second with what the first left.
std::vector<std::uint8_t> OutputOf(const Work& function) {
  std::vector<std::uint8_t> sample(kSampleSize);
  for (std::size_t i = 0; i < sample.size(); ++i) {
    sample[i] = static_cast<std::uint8_t>(i * i >> 3);
  }
  function(sample);
  function(sample);
  return sample;
}

void AddRow(const std::string& name, Work function) {
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

void AddRows(const std::string& work, const std::function<Work(const Peer&)>& workOf) {
  std::vector<std::uint8_t> expected;
  for (const Peer& peer : Peers()) {
    Work function = workOf(peer);
    if (!function) continue;
    const std::string name = work + "/" + peer.name;
    const std::vector<std::uint8_t> made = OutputOf(function);
    if (expected.empty()) expected = made;
    if (made != expected) throw std::runtime_error(name + " is not what Latchkey makes");
    AddRow(name, std::move(function));
  }
}

}  // namespace latchkey::bench
