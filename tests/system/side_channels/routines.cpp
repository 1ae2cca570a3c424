// Runs one routine on secrets that valgrind's memcheck treats as undefined: it then reports every
// branch and every address that depends on them.
//   routines padding | encode_hex | encode_text | decode_hex | branch | table
// The last two depend on their secret, so memcheck must report them.
#include <valgrind/memcheck.h>

#include <array>
#include <cstdio>
#include <string_view>

#include "base/ascii_text.h"
#include "crypto/hexadecimal.h"
#include "provider/portable/padding.h"

namespace latchkey {
namespace {

template <class Values>
void MakeSecret(Values& values) {
  VALGRIND_MAKE_MEM_UNDEFINED(values.data(), values.size() * sizeof(values[0]));
}

// Results are public.
template <class Values>
void MakePublic(Values& values) {
  VALGRIND_MAKE_MEM_DEFINED(values.data(), values.size() * sizeof(values[0]));
}

void CheckPadding() {
  std::array<std::uint8_t, provider::kBlockSize> block{1, 2, 3, 4, 5, 3, 3, 3};
  MakeSecret(block);
  std::array<std::uint32_t, 1> length{provider::PaddingLength(block.data())};
  MakePublic(length);
  std::printf("%u bytes of padding\n", length[0]);
}

void EncodeBytes() {
  std::array<std::uint8_t, 64> bytes{};
  for (std::size_t i = 0; i < bytes.size(); ++i) bytes.at(i) = static_cast<std::uint8_t>(i * 5);
  MakeSecret(bytes);
  Text text;
  EncodeHex(bytes, text);
  MakePublic(text);
  std::printf("%zu digits, the last %c\n", text.size(), static_cast<char>(text.back()));
}

// Only whole steps of text that is known to be ASCII: other text, and the rest after the last step,
// is looked up in the code page's table.
void EncodeAscii() {
  constexpr std::uint16_t kSecretBits = 0x7F;
  Text characters(2 * AsciiText::kStep, u'\0');
  for (std::size_t i = 0; i < characters.size(); ++i) {
    characters[i] = static_cast<char16_t>(i * 5 & kSecretBits);
    static_cast<void>(VALGRIND_SET_VBITS(&characters[i], &kSecretBits, sizeof kSecretBits));
  }
  Text text;
  EncodeHexOfText(characters, text);
  MakePublic(text);
  std::printf("%zu digits, the last %c\n", text.size(), static_cast<char>(text.back()));
}

void DecodeText() {
  Text text = u"0123456789ABCDEFabcdef 1\t2 \n3g\xFFFF 00 G 0G";
  text.resize(text.size() / 2 * 2);
  MakeSecret(text);
  std::array<std::uint8_t, 64> bytes{};
  const std::span decoded = std::span(bytes).first(text.size() / 2);
  DecodeHex(text, decoded);
  MakePublic(bytes);
  std::printf("%zu bytes, the first %u\n", decoded.size(), unsigned{bytes[0]});
}

// Volatile, so that no compiler can remove the branch or the table.
void Branch() {
  std::array<std::uint8_t, 1> secret{7};
  MakeSecret(secret);
  volatile int odd = 0;
  if ((secret[0] & 1U) != 0) odd = 1;
  std::printf("odd: %d\n", odd);
}

void LookUp() {
  std::array<volatile std::uint8_t, 256> table{};
  std::array<std::uint8_t, 1> secret{7};
  MakeSecret(secret);
  std::array<std::uint8_t, 1> found{table[secret[0]]};
  MakePublic(found);
  std::printf("found: %u\n", unsigned{found[0]});
}

int Run(std::string_view name) {
  if (name == "padding") return CheckPadding(), 0;
  if (name == "encode_hex") return EncodeBytes(), 0;
  if (name == "encode_text") return EncodeAscii(), 0;
  if (name == "decode_hex") return DecodeText(), 0;
  if (name == "branch") return Branch(), 0;
  if (name == "table") return LookUp(), 0;
  return 2;
}

}  // namespace
}  // namespace latchkey

int main(int argc, char** argv) { return argc == 2 ? latchkey::Run(argv[1]) : 2; }
