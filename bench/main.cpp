// The comparison with other libraries: latchkey_bench [--benchmark_filter=...]
// [--benchmark_repetitions=...]. bench/run has the options of the published tables.
#include <benchmark/benchmark.h>

#include <exception>
#include <iostream>
#include <string>

#include "base/kernels/cpu_level.h"
#include "bench/peer.h"

namespace latchkey::bench {
namespace {

// Google Benchmark itself prints date, machine and caches.
void DescribeRun() {
  benchmark::AddCustomContext("compiler", __VERSION__);
  benchmark::AddCustomContext("kernels", NameOf(ChosenCpuLevel()));
  for (const Peer& peer : Peers()) benchmark::AddCustomContext(peer.name, peer.version);
}

}  // namespace

const std::vector<Peer>& Peers() {
  static const std::vector<Peer> peers{LatchkeyPeer(), OpensslPeer(), GcryptPeer(),
                                       CryptoppPeer(), NettlePeer(),  BotanPeer()};
  return peers;
}

}  // namespace latchkey::bench

int main(int count, char** arguments) {
  benchmark::Initialize(&count, arguments);
  if (benchmark::ReportUnrecognizedArguments(count, arguments)) return 2;
  int result = 0;
  try {
    latchkey::bench::DescribeRun();
    latchkey::bench::AddRows();
    benchmark::RunSpecifiedBenchmarks();
  } catch (const std::exception& failure) {
    std::cerr << "latchkey_bench: " << failure.what() << '\n';
    result = 1;
  }
  benchmark::ClearRegisteredBenchmarks();  // they own objects of libraries
  benchmark::Shutdown();
  return result;
}
