// ConvertStringToHex and ConvertStringFromHex compared with a plain table loop and with a copy of
// the same number of bytes. A row is named hex/direction/who/length; the length is that of the
// decoded text, in characters.
#include <benchmark/benchmark.h>

#include <array>
#include <cstring>
#include <string>
#include <vector>

#include "bench/component/raw_provider.h"
#include "latchkey/cls_crypto_api.h"
#include "latchkey/cls_main.h"

namespace latchkey::bench {
namespace {

constexpr char16_t kDigits[] = u"0123456789ABCDEF";

Text SampleText(std::int64_t length) {
  Text text(static_cast<std::size_t>(length), u'\0');
  for (std::size_t i = 0; i < text.size(); ++i) text[i] = static_cast<char16_t>(' ' + i % 90);
  return text;
}

Text SampleDigits(std::int64_t length) {
  const clsMain main;
  return clsCryptoAPI().ConvertStringToHex(SampleText(length));
}

// One character after another, two look-ups each, into new text.
Text TableToHex(const Text& text) {
  Text digits(text.size() * 2, u'\0');
  for (std::size_t i = 0; i < text.size(); ++i) {
    digits[2 * i] = kDigits[text[i] >> 4 & 0xF];
    digits[2 * i + 1] = kDigits[text[i] & 0xF];
  }
  return digits;
}

Text TableFromHex(const Text& digits) {
  static const auto values = [] {
    std::array<std::uint8_t, 256> table{};
    for (std::uint8_t value = 0; value < 16; ++value) {
      table[static_cast<std::uint8_t>(kDigits[value])] = value;
    }
    return table;
  }();
  Text text(digits.size() / 2, u'\0');
  for (std::size_t i = 0; i < text.size(); ++i) {
    text[i] =
        static_cast<char16_t>(values[digits[2 * i] & 0xFF] << 4 | values[digits[2 * i + 1] & 0xFF]);
  }
  return text;
}

template <class Convert>
void Run(benchmark::State& state, const Text& source, Convert&& convert) {
  const clsMain main;
  const clsCryptoAPI api;
  for (auto _ : state) benchmark::DoNotOptimize(convert(api, source));
  state.SetBytesProcessed(state.iterations() * state.range(0));
}

// Copies one and a half times the text: bytes read and written are those of the text and its
// digits.
void RunCopy(benchmark::State& state) {
  const Text source = SampleText(state.range(0) + state.range(0) / 2);
  for (auto _ : state) benchmark::DoNotOptimize(Text(source));
  state.SetBytesProcessed(state.iterations() * state.range(0));
}

void ToHex(benchmark::State& state) {
  Run(state, SampleText(state.range(0)),
      [](const auto& api, const Text& t) { return api.ConvertStringToHex(t); });
}
void FromHex(benchmark::State& state) {
  Run(state, SampleDigits(state.range(0)),
      [](const auto& api, const Text& t) { return api.ConvertStringFromHex(t); });
}
void ToHexTable(benchmark::State& state) {
  Run(state, SampleText(state.range(0)),
      [](const auto&, const Text& text) { return TableToHex(text); });
}
void FromHexTable(benchmark::State& state) {
  Run(state, SampleDigits(state.range(0)),
      [](const auto&, const Text& text) { return TableFromHex(text); });
}

void SetLengths(benchmark::internal::Benchmark* row) { row->Arg(32 << 10)->Arg(16 << 20); }

BENCHMARK(ToHex)->Name("hex/to/component")->Apply(SetLengths);
BENCHMARK(ToHexTable)->Name("hex/to/table")->Apply(SetLengths);
BENCHMARK(RunCopy)->Name("hex/to/copy")->Apply(SetLengths);
BENCHMARK(FromHex)->Name("hex/from/component")->Apply(SetLengths);
BENCHMARK(FromHexTable)->Name("hex/from/table")->Apply(SetLengths);
BENCHMARK(RunCopy)->Name("hex/from/copy")->Apply(SetLengths);

}  // namespace
}  // namespace latchkey::bench
