#include <benchmark/benchmark.h>

#include <utility>

#include "bench/peer.h"

namespace latchkey::bench {
namespace {

constexpr std::size_t kBufferSize = std::size_t{16} << 20;

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

void AddWorkload(const std::string& work, const std::function<Workload(const Peer&)>& workloadOf) {
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

void AddCipherRows() {
  constexpr std::pair<CipherId, const char*> kCiphers[] = {{CipherId::Des, "DES-CBC"},
                                                           {CipherId::TripleDes, "3DES-CBC"},
                                                           {CipherId::Rc2, "RC2-CBC"},
                                                           {CipherId::Rc4, "RC4"}};
  for (const auto& [id, name] : kCiphers) {
    for (const Direction direction : {Direction::Decrypt, Direction::Encrypt}) {
      if (id == CipherId::Rc4 && direction == Direction::Decrypt) continue;  // the same operation
      const char* const verb = direction == Direction::Encrypt ? " encryption" : " decryption";
      AddWorkload(name + std::string(verb),
                  [id, direction](const Peer& peer) { return peer.cipher(id, direction); });
    }
  }
}

void AddHashRows() {
  constexpr std::pair<HashId, const char*> kHashes[] = {
      {HashId::Md2, "MD2"}, {HashId::Md4, "MD4"}, {HashId::Md5, "MD5"}, {HashId::Sha1, "SHA-1"}};
  for (const auto& [id, name] : kHashes) {
    AddWorkload(name, [id](const Peer& peer) { return peer.hash(id); });
  }
}

}  // namespace

void AddRows() {
  AddCipherRows();
  AddHashRows();
}

}  // namespace latchkey::bench
