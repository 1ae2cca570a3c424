// CreateHash through clsCryptoAPI compared with the provider's calls. A row is named
// hash/algorithm/who/length.
#include <benchmark/benchmark.h>

#include <string>
#include <vector>

#include "bench/component/allocation_count.h"
#include "bench/component/raw_provider.h"
#include "latchkey/cls_crypto_api.h"
#include "latchkey/cls_main.h"

namespace latchkey::bench {
namespace {

constexpr std::size_t kLongestDigest = 20;

void RunRaw(benchmark::State& state, std::int16_t number) {
  RawProvider raw;
  const auto algorithm = FindHashAlgorithm(number);
  const std::vector<std::uint8_t> data(static_cast<std::size_t>(state.range(0)), 'a');
  const AllocationsOfRow allocations(state);
  for (auto _ : state) {
    const auto hash = raw.MakeHash(algorithm.id, data);
    std::uint8_t digest[kLongestDigest];
    auto length = static_cast<std::uint32_t>(algorithm.length);
    RawProvider::Require(
        raw.provider().CryptGetHashParam(hash, provider::kHashValueParameter, digest, &length, 0));
    RawProvider::Require(raw.provider().CryptDestroyHash(hash));
    benchmark::DoNotOptimize(digest);
  }
  state.SetBytesProcessed(state.iterations() * state.range(0));
}

void RunComponent(benchmark::State& state, std::int16_t number) {
  const clsMain main;
  clsCryptoAPI api;
  api.EnhancedProvider(true);
  const Text text(static_cast<std::size_t>(state.range(0)), u'a');
  RawProvider::Require(!api.CreateHash(text, number, true).empty());
  const AllocationsOfRow allocations(state);
  for (auto _ : state) benchmark::DoNotOptimize(api.CreateHash(text, number, true));
  state.SetBytesProcessed(state.iterations() * state.range(0));
}

constexpr const char* kNames[]{"md5", "md4", "md2", "sha1"};

const bool kRegistered = [] {
  for (const std::int64_t length : {std::int64_t{3}, std::int64_t{16} << 20}) {
    for (std::int16_t number = 1; number <= 4; ++number) {
      const std::string name = std::string("hash/") + kNames[number - 1];
      benchmark::RegisterBenchmark((name + "/raw").c_str(), RunRaw, number)->Arg(length);
      benchmark::RegisterBenchmark((name + "/component").c_str(), RunComponent, number)
          ->Arg(length);
    }
  }
  return true;
}();

}  // namespace
}  // namespace latchkey::bench
