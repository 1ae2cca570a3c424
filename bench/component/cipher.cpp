// Encrypt and Decrypt through clsCryptoAPI compared with the provider's calls. A row is named
// operation/cipher/who/length.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <vector>

#include "bench/component/allocation_count.h"
#include "bench/component/ciphertext_input.h"
#include "bench/component/raw_provider.h"
#include "latchkey/cls_crypto_api.h"
#include "latchkey/cls_main.h"
#include "provider/block_size.h"

namespace latchkey::bench {
namespace {

constexpr std::int16_t kHash = RawProvider::kMd5;
constexpr std::size_t kBlock = provider::kBlockSize;

using Bytes = std::vector<std::uint8_t>;

const Bytes& Password() {
  static const Bytes password(13, 'p');
  return password;
}

// `length` letters encrypted with `cipher`: data to decrypt.
Bytes Ciphertext(RawProvider& raw, provider::AlgorithmId cipher, std::size_t length) {
  Bytes data(length + kBlock, 'a');
  auto size = static_cast<std::uint32_t>(length);
  const auto key = raw.MakeKey(cipher, Password());
  RawProvider::Require(raw.provider().CryptEncrypt(key, 0, true, 0, data.data(), &size,
                                                   static_cast<std::uint32_t>(data.size())));
  RawProvider::Require(raw.provider().CryptDestroyKey(key));
  data.resize(size);
  return data;
}

// Hash, key, the data copied to where the cipher works in place, the cipher, clean-up.
void RunRaw(benchmark::State& state, std::int16_t number, bool decrypt) {
  RawProvider raw;
  const auto cipher = FindCipherAlgorithm(number, true);
  const auto length = static_cast<std::size_t>(state.range(0));
  const Bytes data = decrypt ? Ciphertext(raw, cipher, length) : Bytes(length, 'a');
  Bytes buffer(data.size() + kBlock);
  const AllocationsOfRow allocations(state);
  for (auto _ : state) {
    const auto key = raw.MakeKey(cipher, Password());
    std::copy(data.begin(), data.end(), buffer.begin());
    auto size = static_cast<std::uint32_t>(data.size());
    auto& provider = raw.provider();
    RawProvider::Require(decrypt
                             ? provider.CryptDecrypt(key, 0, true, 0, buffer.data(), &size)
                             : provider.CryptEncrypt(key, 0, true, 0, buffer.data(), &size,
                                                     static_cast<std::uint32_t>(buffer.size())));
    RawProvider::Require(provider.CryptDestroyKey(key));
    benchmark::ClobberMemory();
  }
  state.SetBytesProcessed(state.iterations() * state.range(0));
}

void RunComponent(benchmark::State& state, std::int16_t number, bool decrypt) {
  const clsMain main;
  clsCryptoAPI api;
  api.EnhancedProvider(true);
  ByteArray password = ByteArray::WithTrailingZero(Password());
  api.Password(password);
  const auto length = static_cast<std::size_t>(state.range(0));
  if (decrypt) {
    RawProvider::Require(SetCiphertext(api, kHash, number, length));
  } else {
    api.InputData(Letters(length));
  }
  const auto operation = decrypt ? &clsCryptoAPI::Decrypt : &clsCryptoAPI::Encrypt;
  RawProvider::Require((api.*operation)(kHash, number));
  const AllocationsOfRow allocations(state);
  for (auto _ : state) RawProvider::Require((api.*operation)(kHash, number));
  state.SetBytesProcessed(state.iterations() * state.range(0));
}

constexpr const char* kNames[]{"rc4", "rc2", "des", "3des", "3des-112"};

void Register(std::int16_t number, bool decrypt, std::int64_t length) {
  const std::string name = std::string(decrypt ? "decrypt/" : "encrypt/") + kNames[number - 1];
  benchmark::RegisterBenchmark((name + "/raw").c_str(), RunRaw, number, decrypt)->Arg(length);
  benchmark::RegisterBenchmark((name + "/component").c_str(), RunComponent, number, decrypt)
      ->Arg(length);
}

const bool kRegistered = [] {
  for (const std::int64_t length : {std::int64_t{16}, std::int64_t{16} << 20}) {
    for (std::int16_t number = 1; number <= 5; ++number) {
      Register(number, false, length);
      Register(number, true, length);
    }
  }
  return true;
}();

}  // namespace
}  // namespace latchkey::bench
