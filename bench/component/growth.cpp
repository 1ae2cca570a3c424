// Every operation from 0 bytes to 512 MiB, and a plain copy of a text of the same length for
// comparison. A row is named growth/operation/length and labeled with the unit of the length; a
// length that the operation refuses is an error of its row.
#include <benchmark/benchmark.h>

#include <string>
#include <vector>

#include "bench/component/ciphertext_input.h"
#include "latchkey/cls_crypto_api.h"
#include "latchkey/cls_main.h"

namespace latchkey::bench {
namespace {

constexpr std::int64_t kFirstFlat = std::int64_t{64} << 10;  // linear cost is required from here on
constexpr std::int64_t kLargest = std::int64_t{512} << 20;
constexpr std::int64_t kLargestSlow = std::int64_t{256} << 10;  // letters are drawn one by one
constexpr std::int16_t kHash = 1;

// The data of an operation, prepared before the measurement.
struct Subject {
  explicit Subject(std::size_t length) : text(length, u'a'), array(Letters(length)) {
    api.EnhancedProvider(true);
    api.InputData(array);
  }

  clsMain main;
  clsCryptoAPI api;
  Text text;
  ByteArray array;
};

// Makes the program keep the pages that an operation needs, so that long operations, which run
// once, do not allocate them from the system during the measurement.
void TakePages(std::int64_t length) {
  const std::vector<std::uint8_t> pages(static_cast<std::size_t>(5 * length), 1);
  benchmark::DoNotOptimize(pages.data());
}

// False if a text does not have the expected length: the operation failed.
bool HasLength(const Text& text, std::size_t length) {
  benchmark::DoNotOptimize(text.data());
  return text.size() == length;
}

bool CopyText(Subject& s) { return HasLength(Text(s.text), s.text.size()); }

template <std::int16_t cipher>
bool PrepareDecrypt(Subject& s) {
  return SetCiphertext(s.api, kHash, cipher, s.text.size());
}

template <std::int16_t cipher>
bool Encrypt(Subject& s) {
  return s.api.Encrypt(kHash, cipher);
}

template <std::int16_t cipher>
bool Decrypt(Subject& s) {
  return s.api.Decrypt(kHash, cipher);
}

template <std::int16_t hash>
bool CreateHash(Subject& s) {
  return !s.api.CreateHash(s.text, hash).empty();
}

// The result loses spaces at both ends.
bool CreateRandom(Subject& s) {
  const auto length = static_cast<std::int32_t>(s.text.size());
  return s.api.CreateRandom(length, true).empty() == s.text.empty();
}

bool CreateLetterSalt(Subject& s) {
  const auto length = static_cast<std::int32_t>(s.text.size());
  return HasLength(s.api.CreateSaltValue(length, true), s.text.size());
}

// Loses spaces as CreateRandom does: a few characters may all be lost.
bool CreateRawSalt(Subject& s) {
  const auto length = static_cast<std::int32_t>(s.text.size());
  return !s.api.CreateSaltValue(length, false).empty() || length < 8;
}

bool InputData(Subject& s) {
  s.api.InputData(s.array);
  return true;
}

bool PrepareOutputData(Subject& s) { return s.api.Encrypt(kHash, 1); }

bool OutputData(Subject& s) { return s.api.OutputData().TextElements().size() == s.text.size(); }

// Passes a copy of the array, since the caller's is erased. One element is no password.
bool SetPassword(Subject& s) {
  ByteArray password = s.array;
  s.api.Password(password);
  return !s.text.empty();
}

bool GetPassword(Subject& s) {
  return s.api.Password().TextElements().size() == s.text.size() && !s.text.empty();
}

bool StringToByteArray(Subject& s) {
  return s.api.StringToByteArray(TextView(s.text)).TextElements().size() == s.text.size();
}

bool ByteArrayToString(Subject& s) {
  return HasLength(s.api.ByteArrayToString(s.array), s.text.size());
}

bool ConvertStringToHex(Subject& s) {
  return HasLength(s.api.ConvertStringToHex(s.text), 2 * s.text.size());
}

bool ConvertStringFromHex(Subject& s) {
  return s.text.size() % 2 == 0 && HasLength(s.api.ConvertStringFromHex(s.text), s.text.size() / 2);
}

bool NoPreparation(Subject& /*subject*/) { return true; }

// Each returns whether it succeeded; `prepare` is not measured.
struct Operation {
  const char* name;
  const char* unit;
  bool (*run)(Subject&);
  bool (*prepare)(Subject&) = NoPreparation;
  std::int64_t largest = kLargest;
};

constexpr const char* kBytes = "bytes";
constexpr const char* kCharacters = "characters";

constexpr Operation kOperations[]{
    {"(copying a text)", kCharacters, CopyText},
    {"Encrypt RC4", kBytes, Encrypt<1>},
    {"Encrypt RC2", kBytes, Encrypt<2>},
    {"Encrypt DES", kBytes, Encrypt<3>},
    {"Encrypt 3DES", kBytes, Encrypt<4>},
    {"Encrypt 3DES-112", kBytes, Encrypt<5>},
    {"Decrypt RC4", kBytes, Decrypt<1>, PrepareDecrypt<1>},
    {"Decrypt RC2", kBytes, Decrypt<2>, PrepareDecrypt<2>},
    {"Decrypt DES", kBytes, Decrypt<3>, PrepareDecrypt<3>},
    {"Decrypt 3DES", kBytes, Decrypt<4>, PrepareDecrypt<4>},
    {"Decrypt 3DES-112", kBytes, Decrypt<5>, PrepareDecrypt<5>},
    {"InputData", kBytes, InputData},
    {"OutputData", kBytes, OutputData, PrepareOutputData},
    {"Password, written (and a copy)", kBytes, SetPassword},
    {"Password, read", kBytes, GetPassword, SetPassword},
    {"CreateHash MD5", kCharacters, CreateHash<1>},
    {"CreateHash MD4", kCharacters, CreateHash<2>},
    {"CreateHash MD2", kCharacters, CreateHash<3>},
    {"CreateHash SHA-1", kCharacters, CreateHash<4>},
    {"CreateRandom", kCharacters, CreateRandom},
    {"CreateSaltValue, raw", kCharacters, CreateRawSalt},
    {"CreateSaltValue, letters", kCharacters, CreateLetterSalt, NoPreparation, kLargestSlow},
    {"StringToByteArray", kCharacters, StringToByteArray},
    {"ByteArrayToString", kBytes, ByteArrayToString},
    {"ConvertStringToHex", kCharacters, ConvertStringToHex},
    {"ConvertStringFromHex", "digits", ConvertStringFromHex},
};

void Run(benchmark::State& state, const Operation& operation) {
  Subject subject(static_cast<std::size_t>(state.range(0)));
  if (!operation.prepare(subject)) return state.SkipWithError("refused");
  TakePages(state.range(0));
  bool done = true;
  for (auto _ : state) done = operation.run(subject) && done;
  if (!done) return state.SkipWithError("refused");
  state.SetLabel(operation.unit);
}

const bool kRegistered = [] {
  for (const Operation& operation : kOperations) {
    auto* const row = benchmark::RegisterBenchmark(
        (std::string("growth/") + operation.name).c_str(), Run, operation);
    row->Arg(0);
    for (std::int64_t length = 1; length < operation.largest; length *= 8) row->Arg(length);
    row->Arg(kFirstFlat)->Arg(operation.largest);
  }
  return true;
}();

}  // namespace
}  // namespace latchkey::bench
