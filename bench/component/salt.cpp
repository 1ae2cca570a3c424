// CreateSaltValue compared with reading the list of running processes once for each letter, which
// is part of a letter's seed. A row is named salt/who/letters.
#include <benchmark/benchmark.h>
#include <dirent.h>

#include <cstdint>
#include <string>

#include "bench/component/raw_provider.h"
#include "latchkey/cls_crypto_api.h"
#include "latchkey/cls_main.h"

namespace latchkey::bench {
namespace {

constexpr std::int32_t kLetters = 20;

void RunWalks(benchmark::State& state) {
  for (auto _ : state) {
    for (std::int32_t letter = 0; letter < kLetters; ++letter) {
      DIR* const folder = ::opendir("/proc");
      RawProvider::Require(folder != nullptr);
      while (dirent* const entry = ::readdir(folder)) benchmark::DoNotOptimize(entry->d_name[0]);
      ::closedir(folder);
    }
  }
}

void RunComponent(benchmark::State& state) {
  const clsMain main;
  clsCryptoAPI api;
  for (auto _ : state) {
    const Text salt = api.CreateSaltValue(kLetters, true);
    RawProvider::Require(salt.size() == kLetters);
  }
}

const bool kRegistered = [] {
  const std::string letters = std::to_string(kLetters);
  benchmark::RegisterBenchmark(("salt/walks/" + letters).c_str(), RunWalks);
  benchmark::RegisterBenchmark(("salt/component/" + letters).c_str(), RunComponent);
  return true;
}();

}  // namespace
}  // namespace latchkey::bench
