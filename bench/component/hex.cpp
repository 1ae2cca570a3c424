// ConvertStringToHex and ConvertStringFromHex beside a plain table loop and beside copying what
// they move. A row is named hex/direction/who/length.
#include <benchmark/benchmark.h>

#include <array>
#include <cstring>
#include <string>
#include <vector>

#include "bench/component/raw_provider.h"
#include "com/cls_main.h"
#include "crypto/cls_crypto_api.h"

namespace latchkey::bench {
namespace {

constexpr std::int64_t kLength = std::int64_t{16} << 20;
constexpr char16_t kDigits[] = u"0123456789ABCDEF";

Text SampleText() {
  Text text(static_cast<std::size_t>(kLength), u'\0');
  for (std::size_t i = 0; i < text.size(); ++i) text[i] = static_cast<char16_t>(' ' + i % 90);
  return text;
}

Text SampleDigits() {
  const clsMain main;
  return clsCryptoAPI().ConvertStringToHex(SampleText());
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
  state.SetBytesProcessed(state.iterations() * kLength);
}

// The source and the result copied into new text: as many bytes read and written.
void RunCopy(benchmark::State& state) {
  const Text text = SampleText();
  const Text digits = SampleDigits();
  for (auto _ : state) {
    benchmark::DoNotOptimize(Text(text));
    benchmark::DoNotOptimize(Text(digits));
  }
  state.SetBytesProcessed(state.iterations() * kLength);
}

void ToHex(benchmark::State& state) {
  Run(state, SampleText(),
      [](const auto& api, const Text& t) { return api.ConvertStringToHex(t); });
}
void FromHex(benchmark::State& state) {
  Run(state, SampleDigits(),
      [](const auto& api, const Text& t) { return api.ConvertStringFromHex(t); });
}
void ToHexTable(benchmark::State& state) {
  Run(state, SampleText(), [](const auto&, const Text& text) { return TableToHex(text); });
}
void FromHexTable(benchmark::State& state) {
  Run(state, SampleDigits(), [](const auto&, const Text& text) { return TableFromHex(text); });
}

BENCHMARK(ToHex)->Name("hex/to/component");
BENCHMARK(ToHexTable)->Name("hex/to/table");
BENCHMARK(RunCopy)->Name("hex/to/copy");
BENCHMARK(FromHex)->Name("hex/from/component");
BENCHMARK(FromHexTable)->Name("hex/from/table");
BENCHMARK(RunCopy)->Name("hex/from/copy");

}  // namespace
}  // namespace latchkey::bench
