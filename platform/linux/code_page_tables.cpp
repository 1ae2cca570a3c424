#include "platform/code_page_tables.h"

#include <set>
#include <string>
#include <vector>

#include "platform/linux/character_converter.h"

namespace latchkey::platform {
namespace {

// Characters of Windows that iconv lacks, for the bytes from `first` to `last` in order.
// Private-use characters denote bytes that the code page leaves undefined.
struct ByteRun {
  std::uint32_t codePage;
  std::uint8_t first;
  std::uint8_t last;
  char16_t character;
};

constexpr auto kByteRuns = std::to_array<ByteRun>({
    {1253, 0xAA, 0xAA, 0xF8F9},
    {1253, 0xD2, 0xD2, 0xF8FA},
    {1253, 0xFF, 0xFF, 0xF8FB},
    {1255, 0xCA, 0xCA, 0x05BA},
    {1255, 0xD9, 0xDF, 0xF88D},
    {1255, 0xFB, 0xFC, 0xF894},
    {1255, 0xFF, 0xFF, 0xF896},
    {1257, 0xA1, 0xA1, 0xF8FC},
    {1257, 0xA5, 0xA5, 0xF8FD},
    {874, 0xDB, 0xDE, 0xF8C1},
    {874, 0xFC, 0xFF, 0xF8C5},
    {932, 0xA0, 0xA0, 0xF8F0},
    {932, 0xFD, 0xFF, 0xF8F1},
    {936, 0xFF, 0xFF, 0xF8F5},
    {949, 0xFF, 0xFF, 0xF8F7},
    {950, 0xFF, 0xFF, 0xF8F8},
});

// Two-byte codes of private-use characters on Windows: the lead bytes combined with the trail bytes
// from firstTrail to lastTrail, except those from 7F to gapEnd.
struct PrivateRows {
  std::uint32_t codePage;
  std::uint8_t firstLead;
  std::uint8_t lastLead;
  std::uint8_t firstTrail;
  std::uint8_t lastTrail;
  std::uint8_t gapEnd;
};

// In the order of the characters from U+E000 on. The place of a code decides its character, no
// matter which character a version of iconv gives it.
constexpr auto kPrivateRows = std::to_array<PrivateRows>({
    {936, 0xAA, 0xAF, 0xA1, 0xFE, 0x7F}, {936, 0xF8, 0xFE, 0xA1, 0xFE, 0x7F},
    {936, 0xA1, 0xA7, 0x40, 0xA0, 0x7F}, {936, 0xA2, 0xA2, 0xAB, 0xB0, 0x7F},
    {936, 0xA2, 0xA2, 0xE3, 0xE4, 0x7F}, {936, 0xA2, 0xA2, 0xEF, 0xF0, 0x7F},
    {936, 0xA2, 0xA2, 0xFD, 0xFE, 0x7F}, {936, 0xA4, 0xA4, 0xF4, 0xFE, 0x7F},
    {936, 0xA5, 0xA5, 0xF7, 0xFE, 0x7F}, {936, 0xA6, 0xA6, 0xB9, 0xC0, 0x7F},
    {936, 0xA6, 0xA6, 0xD9, 0xDF, 0x7F}, {936, 0xA6, 0xA6, 0xEC, 0xED, 0x7F},
    {936, 0xA6, 0xA6, 0xF3, 0xF3, 0x7F}, {936, 0xA6, 0xA6, 0xF6, 0xFE, 0x7F},
    {936, 0xA7, 0xA7, 0xC2, 0xD0, 0x7F}, {936, 0xA7, 0xA7, 0xF2, 0xFE, 0x7F},
    {936, 0xA8, 0xA8, 0x96, 0xA0, 0x7F}, {936, 0xA8, 0xA8, 0xBC, 0xBC, 0x7F},
    {936, 0xA8, 0xA8, 0xBF, 0xBF, 0x7F}, {936, 0xA8, 0xA8, 0xC1, 0xC4, 0x7F},
    {936, 0xA8, 0xA8, 0xEA, 0xFE, 0x7F}, {936, 0xA9, 0xA9, 0x58, 0x58, 0x7F},
    {936, 0xA9, 0xA9, 0x5B, 0x5B, 0x7F}, {936, 0xA9, 0xA9, 0x5D, 0x5F, 0x7F},
    {936, 0xA9, 0xA9, 0x89, 0x95, 0x7F}, {936, 0xA9, 0xA9, 0x97, 0xA3, 0x7F},
    {936, 0xA9, 0xA9, 0xF0, 0xFE, 0x7F}, {936, 0xD7, 0xD7, 0xFA, 0xFE, 0x7F},
    {936, 0xFE, 0xFE, 0x50, 0xA0, 0x7F}, {949, 0xC9, 0xC9, 0xA1, 0xFE, 0x7F},
    {949, 0xFE, 0xFE, 0xA1, 0xFE, 0x7F}, {950, 0xFA, 0xFE, 0x40, 0xFE, 0xA0},
    {950, 0x8E, 0xA0, 0x40, 0xFE, 0xA0}, {950, 0x81, 0x8D, 0x40, 0xFE, 0xA0},
});

constexpr char16_t kFirstPrivate = 0xE000;

// For a character with two codes, the one that Windows writes and iconv does not.
struct OtherCode {
  std::uint32_t codePage;
  char16_t character;
  std::uint32_t code;
};

constexpr auto kOtherCodes = std::to_array<OtherCode>({
    {950, 0x2550, 0xF9F9},
    {950, 0x255E, 0xF9E9},
    {950, 0x2561, 0xF9EB},
    {950, 0x256A, 0xF9EA},
});

constexpr std::uint32_t kUtf8 = 65001;

std::string EncodingOf(std::uint32_t number) {
  return number == kUtf8 ? "UTF-8" : "CP" + std::to_string(number);
}

void ReadHighHalf(const CharacterConverter& converter, std::uint32_t number,
                  CodePage::HighHalf& characters) {
  for (std::uint32_t i = 0; i < characters.size(); ++i) {
    characters[i] = converter.CharacterOf(0x80 + i);
  }
  for (const ByteRun& run : kByteRuns) {
    if (run.codePage != number) continue;
    for (unsigned byte = run.first; byte <= run.last; ++byte) {
      characters.at(byte - 0x80) = static_cast<char16_t>(run.character + byte - run.first);
    }
  }
}

// A character that only resembles that of its code does not convert back, and has no code.
std::uint32_t LongCodeOf(const CharacterConverter& converter, char16_t character) {
  const std::uint32_t code = converter.CodeOf(character);
  return code > 0xFF && converter.CharacterOf(code) == character ? code : CodePage::kDefaultCode;
}

// The codes of the private-use characters from kFirstPrivate on.
std::vector<std::uint32_t> PrivateCodes(std::uint32_t number) {
  std::vector<std::uint32_t> codes;
  for (const PrivateRows& rows : kPrivateRows) {
    if (rows.codePage != number) continue;
    for (std::uint32_t lead = rows.firstLead; lead <= rows.lastLead; ++lead) {
      for (std::uint32_t trail = rows.firstTrail; trail <= rows.lastTrail; ++trail) {
        if (trail < 0x7F || trail > rows.gapEnd) codes.push_back(lead << 8 | trail);
      }
    }
  }
  return codes;
}

// A character with one of these codes in iconv has no code on Windows.
void AddPrivateCharacters(std::uint32_t number, CodePageTables& tables) {
  const std::vector<std::uint32_t> codes = PrivateCodes(number);
  const std::set<std::uint32_t> isPrivate(codes.begin(), codes.end());
  for (std::uint32_t& code : tables.longCodes) {
    if (isPrivate.contains(code)) code = CodePage::kDefaultCode;
  }
  char16_t character = kFirstPrivate;
  for (const std::uint32_t code : codes) tables.longCodes.at(character++) = code;
}

// A surrogate is half of a four-byte UTF-8 character. Windows writes a surrogate alone as the
// replacement character.
void AddSurrogates(std::uint32_t number, CodePageTables& tables) {
  constexpr char16_t kReplacement = 0xFFFD;
  if (number != kUtf8) return;
  for (std::size_t half = 0xD800; half <= 0xDFFF; ++half) {
    tables.longCodes[half] = tables.longCodes[kReplacement];
  }
}

void ReadLongCodes(const CharacterConverter& converter, std::uint32_t number,
                   CodePageTables& tables) {
  for (std::uint32_t character = 0; character < tables.longCodes.size(); ++character) {
    tables.longCodes[character] = LongCodeOf(converter, static_cast<char16_t>(character));
  }
  AddPrivateCharacters(number, tables);
  AddSurrogates(number, tables);
  for (const OtherCode& other : kOtherCodes) {
    if (other.codePage == number) tables.longCodes[other.character] = other.code;
  }
}

}  // namespace

bool ReadCodePage(std::uint32_t number, CodePageTables& tables) {
  const CharacterConverter converter(EncodingOf(number).c_str());
  if (!converter.IsAvailable()) return false;
  ReadHighHalf(converter, number, tables.characters);
  if (IsMultiByte(number)) ReadLongCodes(converter, number, tables);
  return true;
}

}  // namespace latchkey::platform
