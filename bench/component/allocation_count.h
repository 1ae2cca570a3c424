// The number of allocations of the program.
#pragma once

#include <benchmark/benchmark.h>

#include <cstdint>

namespace latchkey::bench {

[[nodiscard]] std::uint64_t AllocationCount() noexcept;

// Reports the allocations for each iteration of a row, from construction to destruction.
class AllocationsOfRow {
 public:
  explicit AllocationsOfRow(benchmark::State& state) noexcept : state_(state) {}
  AllocationsOfRow(const AllocationsOfRow&) = delete;
  AllocationsOfRow& operator=(const AllocationsOfRow&) = delete;
  ~AllocationsOfRow() {
    state_.counters["allocations"] =
        static_cast<double>(AllocationCount() - before_) / static_cast<double>(state_.iterations());
  }

 private:
  benchmark::State& state_;
  std::uint64_t before_ = AllocationCount();
};

}  // namespace latchkey::bench
