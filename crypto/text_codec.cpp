#include "crypto/text_codec.h"

#include <algorithm>

#include "diagnostics/checked_arithmetic.h"
#include "diagnostics/module_data.h"

namespace latchkey {
namespace {

using platform::CodePage;
using platform::WipedBytes;

const CodePage& ThreadCodePage() { return *ThreadModuleData().services.codePage; }

char16_t CharacterOf(const CodePage& codePage, std::uint8_t byte) {
  const std::int32_t character = codePage.CharacterOf(byte);
  if (character == CodePage::kNoCharacter) throw Fault(FaultNumber::Overflow);
  return static_cast<char16_t>(character);
}

// A piece of this length that is ASCII is converted as one: the loops over it have no branch, so
// that a compiler turns them into vector instructions.
constexpr std::size_t kRun = 64;

template <class Code>
bool IsAscii(std::span<const Code, kRun> run) {
  Code bits = 0;
  for (const Code code : run) bits = static_cast<Code>(bits | code);
  return bits < 0x80;
}

// Converts each element by `convert`, and ASCII by itself where the code page keeps it.
template <class From, class To, class Convert>
void ConvertEach(const CodePage& codePage, std::span<const From> from, To* to, Convert&& convert) {
  std::size_t done = 0;
  while (codePage.KeepsAscii() && from.size() - done >= kRun) {
    const auto run = from.subspan(done).template first<kRun>();
    if (IsAscii(run)) {
      for (std::size_t i = 0; i < kRun; ++i) to[done + i] = static_cast<To>(run[i]);
    } else {
      std::transform(run.begin(), run.end(), to + done, convert);
    }
    done += kRun;
  }
  std::transform(from.begin() + static_cast<std::ptrdiff_t>(done), from.end(), to + done, convert);
}

}  // namespace

WipedBytes EncodeText(TextView text) {
  WipedBytes bytes(text.size());
  EncodeText(text, bytes);
  return bytes;
}

void EncodeText(TextView text, std::span<std::uint8_t> bytes) {
  const CodePage& codePage = ThreadCodePage();
  ConvertEach(codePage, std::span(text), bytes.data(), [&](char16_t character) {
    return NarrowTo<std::uint8_t>(codePage.CodeOf(character));
  });
}

void EncodeLowBytes(TextView text, std::span<std::uint8_t> bytes) {
  const CodePage& codePage = ThreadCodePage();
  ConvertEach(codePage, std::span(text), bytes.data(), [&](char16_t character) {
    return static_cast<std::uint8_t>(codePage.CodeOf(character) & 0xFF);
  });
}

void DecodeBytes(std::span<const std::uint8_t> bytes, Text& text) {
  const CodePage& codePage = ThreadCodePage();
  // Refuse before the first character is written: a fault leaves the caller's text as it was.
  if (!codePage.MapsEveryByte()) {
    for (const std::uint8_t byte : bytes) static_cast<void>(CharacterOf(codePage, byte));
  }
  text.resize(bytes.size());
  ConvertEach(codePage, bytes, text.data(),
              [&](std::uint8_t byte) { return static_cast<char16_t>(codePage.CharacterOf(byte)); });
}

void PassThroughText(std::span<std::uint8_t> bytes) {
  const CodePage& codePage = ThreadCodePage();
  if (codePage.MapsEveryByte()) return;
  for (std::uint8_t& byte : bytes) {
    byte = NarrowTo<std::uint8_t>(codePage.CodeOf(CharacterOf(codePage, byte)));
  }
}

}  // namespace latchkey
