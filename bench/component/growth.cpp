// Every operation from 0 bytes to 512 MiB, and beside them a plain copy of a text of that length:
// what memory takes. A row is named growth/operation/length.
#include <benchmark/benchmark.h>

#include <string>
#include <utility>
#include <vector>

#include "bench/component/raw_provider.h"
#include "com/cls_main.h"
#include "crypto/cls_crypto_api.h"

namespace latchkey::bench {
namespace {

constexpr std::int64_t kLargest = std::int64_t{512} << 20;
constexpr std::int16_t kHash = RawProvider::kMd5;

// What an operation works on, made ready before it is measured.
struct Subject {
  explicit Subject(std::size_t length) : text(length, u'a') {
    api.EnhancedProvider(true);
    array = api.StringToByteArray(TextView(text));
    api.InputData(array);
  }

  clsMain main;
  clsCryptoAPI api;
  Text text;
  ByteArray array;
};

// Has the program keep as many pages as an operation needs, so that the long ones, which run once,
// do not take theirs from the system while they are measured.
void TakePages(std::int64_t length) {
  const std::vector<std::uint8_t> pages(static_cast<std::size_t>(5 * length), 1);
  benchmark::DoNotOptimize(pages.data());
}

using Operation = void (*)(Subject&);

void Encrypt(Subject& subject, std::int16_t cipher) {
  benchmark::DoNotOptimize(subject.api.Encrypt(kHash, cipher));
}

constexpr std::pair<const char*, Operation> kOperations[]{
    {"(copying a text)", [](Subject& s) { benchmark::DoNotOptimize(Text(s.text)); }},
    {"Encrypt RC4", [](Subject& s) { Encrypt(s, 1); }},
    {"Encrypt RC2", [](Subject& s) { Encrypt(s, 2); }},
    {"Encrypt DES", [](Subject& s) { Encrypt(s, 3); }},
    {"Encrypt 3DES", [](Subject& s) { Encrypt(s, 4); }},
    {"CreateHash MD5", [](Subject& s) { benchmark::DoNotOptimize(s.api.CreateHash(s.text, 1)); }},
    {"CreateHash MD2", [](Subject& s) { benchmark::DoNotOptimize(s.api.CreateHash(s.text, 3)); }},
    {"CreateHash SHA-1", [](Subject& s) { benchmark::DoNotOptimize(s.api.CreateHash(s.text, 4)); }},
    {"CreateRandom",
     [](Subject& s) {
       const auto length = static_cast<std::int32_t>(s.text.size());
       benchmark::DoNotOptimize(s.api.CreateRandom(length, true));
     }},
    {"InputData", [](Subject& s) { s.api.InputData(s.array); }},
    {"StringToByteArray",
     [](Subject& s) { benchmark::DoNotOptimize(s.api.StringToByteArray(TextView(s.text))); }},
    {"ByteArrayToString",
     [](Subject& s) { benchmark::DoNotOptimize(s.api.ByteArrayToString(s.array)); }},
    {"ConvertStringToHex",
     [](Subject& s) { benchmark::DoNotOptimize(s.api.ConvertStringToHex(s.text)); }},
    {"ConvertStringFromHex",
     [](Subject& s) { benchmark::DoNotOptimize(s.api.ConvertStringFromHex(s.text)); }},
};

// What was encrypted before under each cipher, so that decryption has its input.
void RunDecrypt(benchmark::State& state, std::int16_t cipher) {
  Subject subject(static_cast<std::size_t>(state.range(0)));
  if (!subject.api.Encrypt(kHash, cipher)) return state.SkipWithError("too short to encrypt");
  subject.api.InputData(subject.api.OutputData());
  TakePages(state.range(0));
  for (auto _ : state) benchmark::DoNotOptimize(subject.api.Decrypt(kHash, cipher));
  state.SetBytesProcessed(state.iterations() * state.range(0));
}

void Run(benchmark::State& state, Operation operation) {
  Subject subject(static_cast<std::size_t>(state.range(0)));
  TakePages(state.range(0));
  for (auto _ : state) operation(subject);
  state.SetBytesProcessed(state.iterations() * state.range(0));
}

void SetLengths(benchmark::internal::Benchmark* row) {
  row->Arg(0);
  for (std::int64_t length = 1; length <= kLargest; length *= 8) row->Arg(length);
  row->Arg(kLargest);
}

const bool kRegistered = [] {
  for (const auto& [name, operation] : kOperations) {
    SetLengths(
        benchmark::RegisterBenchmark((std::string("growth/") + name).c_str(), Run, operation));
  }
  for (const auto& [name, cipher] :
       {std::pair<const char*, std::int16_t>{"growth/Decrypt RC4", std::int16_t{1}},
        {"growth/Decrypt RC2", std::int16_t{2}},
        {"growth/Decrypt DES", std::int16_t{3}},
        {"growth/Decrypt 3DES", std::int16_t{4}}}) {
    SetLengths(benchmark::RegisterBenchmark(name, RunDecrypt, cipher));
  }
  return true;
}();

}  // namespace
}  // namespace latchkey::bench
