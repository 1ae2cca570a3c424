#include "tests/system/trust/case_player.h"

#include <algorithm>
#include <cctype>

#include "latchkey/fault.h"
#include "tests/system/trust/random_values.h"

namespace latchkey::test {
namespace {

constexpr std::size_t kLongestPassword = 4096;
constexpr std::size_t kLongestData = 2000;
constexpr std::size_t kLongestText = 1000;

// Runs a call and returns its outcome: its result, or the fault that passed to the client.
template <class Call>
std::string OutcomeOf(Call&& call) {
  try {
    return call();
  } catch (const Fault& fault) {
    return "fault " + Shown(std::int64_t{fault.Number()}) + " " + Shown(fault.Description());
  }
}

// Random text by its shape. Spaces at its ends are lost, so a few characters may be missing.
std::string ShapeOf(const Text& text, std::int32_t length, bool exact) {
  const auto size = static_cast<std::int64_t>(text.size());
  if (!exact) return text.empty() ? "empty" : "some";
  return size <= length && size + 8 >= length ? "as long as asked" : "of length " + Shown(size);
}

bool IsLetter(char16_t code) { return code < 128 && std::isalpha(code) != 0; }
bool IsHexDigit(char16_t code) {
  return (code >= u'0' && code <= u'9') || (code >= u'A' && code <= u'F');
}

template <class Predicate>
std::string IfAll(const Text& text, Predicate&& predicate, const char* shown) {
  return std::all_of(text.begin(), text.end(), predicate) ? shown : "";
}

}  // namespace

const CasePlayer::Weighted CasePlayer::kSteps[] = {{6, &CasePlayer::PutInputData},
                                                   {4, &CasePlayer::ReturnOutput},
                                                   {6, &CasePlayer::PutPassword},
                                                   {4, &CasePlayer::PutEnhancedProvider},
                                                   {3, &CasePlayer::PutUseDefaultPwd},
                                                   {8, &CasePlayer::CreateHash},
                                                   {2, &CasePlayer::CreateRandom},
                                                   {2, &CasePlayer::CreateSaltValue},
                                                   {10, &CasePlayer::Encrypt},
                                                   {10, &CasePlayer::Decrypt},
                                                   {3, &CasePlayer::ByteArrayToString},
                                                   {3, &CasePlayer::StringToByteArray},
                                                   {3, &CasePlayer::ConvertStringFromHex},
                                                   {3, &CasePlayer::ConvertStringToHex}};

CasePlayer::Member CasePlayer::DrawStep() {
  unsigned total = 0;
  for (const Weighted& step : kSteps) total += step.weight;
  auto left = random_.Below(total);
  for (const Weighted& step : kSteps) {
    if (left < step.weight) return step.member;
    left -= step.weight;
  }
  return kSteps[0].member;
}

void CasePlayer::Begin() {
  if (!component_.HasMain()) component_.CreateMain();
  component_.CreateService();
  usesDefaultPassword_ = true;
}

std::uint64_t CasePlayer::Play() {
  while (component_.HasMain()) component_.DropMain();
  Begin();
  const auto steps = 4 + random_.Below(12);
  for (std::uint64_t i = 0; i < steps; ++i) {
    if (random_.OneIn(24)) ChangeObjects();
    Step();
  }
  return steps;
}

void CasePlayer::ChangeObjects() {
  switch (random_.Below(3)) {
    case 0:
      Begin();
      return transcript_.Line("new objects");
    case 1:
      component_.CreateMain();
      return transcript_.Line("one more entry object");
    default:
      if (component_.HasMain()) component_.DropMain();
      return transcript_.Line("one entry object less");
  }
}

void CasePlayer::Step() {
  transcript_.Line(OutcomeOf([&] { return (this->*DrawStep())(); }));
  WriteState();
}

void CasePlayer::WriteState() {
  transcript_.Line("  OutputData " + Shown(component_.OutputData()) + ", Password " +
                   Shown(component_.Password()));
  if (!component_.HasMain()) return;
  transcript_.Line(OutcomeOf([&] {
    const SeenRecord record = component_.Record();
    return "  record " + Shown(std::int64_t{record.location}) + " " +
           Shown(std::int64_t{record.type}) + " " + Shown(std::int64_t{record.rtNumber}) + " " +
           Shown(record.rtDescription) + " " + Shown(std::int64_t{record.appNumber}) + " " +
           Shown(record.appDescription) + " " + Shown(record.exists) + " " +
           Shown(std::int64_t{record.machineState});
  }));
}

std::int16_t CasePlayer::DrawNumber() {
  // Half of them valid for either provider.
  return static_cast<std::int16_t>(random_.Flag() ? random_.Between(1, 3) : random_.Between(-1, 6));
}

std::string CasePlayer::PutInputData() {
  const ByteArray data = RandomArray(random_, kLongestData);
  transcript_.Line("InputData = " + Shown(data));
  component_.InputData(data);
  return "  set";
}

std::string CasePlayer::ReturnOutput() {
  const ByteArray data = component_.OutputData();
  transcript_.Line("InputData = OutputData");
  component_.InputData(data);
  return "  set";
}

std::string CasePlayer::PutPassword() {
  ByteArray password = RandomArray(random_, kLongestPassword);
  transcript_.Line("Password = " + Shown(password));
  const std::string outcome = OutcomeOf([&]() -> std::string {
    component_.Password(password);
    return "  set";
  });
  return outcome + ", the caller's is " + Shown(password);
}

std::string CasePlayer::PutEnhancedProvider() {
  const bool flag = random_.Flag();
  transcript_.Line("EnhancedProvider = " + Shown(flag));
  component_.EnhancedProvider(flag);
  return "  set";
}

std::string CasePlayer::PutUseDefaultPwd() {
  const bool flag = random_.Flag();
  transcript_.Line("UseDefaultPWD = " + Shown(flag));
  component_.UseDefaultPWD(flag);
  usesDefaultPassword_ = flag;
  return "  set";
}

std::string CasePlayer::CreateHash() {
  const Text text = RandomText(random_, kLongestText);
  const std::int16_t hash = DrawNumber();
  const bool hex = random_.Flag();
  const bool append = random_.Flag();
  const bool caseSensitive = random_.Flag();
  transcript_.Line("CreateHash " + Shown(text) + " " + Shown(std::int64_t{hash}) + " " +
                   Shown(hex) + " " + Shown(append) + " " + Shown(caseSensitive));
  const bool letters =
      append && !usesDefaultPassword_ && component_.Password().Elements().size() < 2;
  const Text digest = component_.CreateHash(text, hash, hex, append, caseSensitive);
  if (!letters) return "  " + Shown(digest);
  // Raw digests lose trailing bytes that are spaces.
  return "  random, " + ShapeOf(digest, 0, false) +
         (hex ? " " + std::to_string(digest.size()) : "");
}

std::string CasePlayer::CreateRandom() {
  const auto length =
      static_cast<std::int32_t>(RandomSize(random_, 400)) - (random_.OneIn(9) ? 3 : 0);
  const bool exact = random_.Flag();
  const bool hex = random_.Flag();
  const bool upper = random_.Flag();
  transcript_.Line("CreateRandom " + Shown(std::int64_t{length}) + " " + Shown(exact) + " " +
                   Shown(hex) + " " + Shown(upper));
  const Text text = component_.CreateRandom(length, exact, hex, upper);
  return "  " + ShapeOf(text, length, exact) + (hex ? IfAll(text, IsHexDigit, " digits") : "");
}

std::string CasePlayer::CreateSaltValue() {
  const bool letters = random_.Flag();
  const auto length = static_cast<std::int32_t>(RandomSize(random_, letters ? 20 : 400)) -
                      (random_.OneIn(9) ? 3 : 0);
  transcript_.Line("CreateSaltValue " + Shown(std::int64_t{length}) + " " + Shown(letters));
  const Text text = component_.CreateSaltValue(length, letters);
  if (!letters) return "  " + ShapeOf(text, length, true);
  return "  " + std::to_string(text.size()) + IfAll(text, IsLetter, " letters");
}

std::string CasePlayer::Encrypt() {
  lastHash_ = DrawNumber();
  lastCipher_ = DrawNumber();
  transcript_.Line("Encrypt " + Shown(std::int64_t{lastHash_}) + " " +
                   Shown(std::int64_t{lastCipher_}));
  return "  " + Shown(component_.Encrypt(lastHash_, lastCipher_));
}

std::string CasePlayer::Decrypt() {
  const bool undo = random_.Flag();
  const std::int16_t hash = undo ? lastHash_ : DrawNumber();
  const std::int16_t cipher = undo ? lastCipher_ : DrawNumber();
  transcript_.Line("Decrypt " + Shown(std::int64_t{hash}) + " " + Shown(std::int64_t{cipher}));
  return "  " + Shown(component_.Decrypt(hash, cipher));
}

std::string CasePlayer::ByteArrayToString() {
  const ByteArray array = RandomArray(random_, kLongestData);
  transcript_.Line("ByteArrayToString " + Shown(array));
  return "  " + Shown(component_.ByteArrayToString(array));
}

std::string CasePlayer::StringToByteArray() {
  const Text text = RandomText(random_, kLongestText);
  const Variant value = RandomVariant(random_, text);
  transcript_.Line("StringToByteArray of kind " + std::to_string(value.index()) + " " +
                   Shown(text));
  return "  " + Shown(component_.StringToByteArray(value));
}

std::string CasePlayer::ConvertStringFromHex() {
  const Text hex = RandomHex(random_, kLongestText);
  transcript_.Line("ConvertStringFromHex " + Shown(hex));
  return "  " + Shown(component_.ConvertStringFromHex(hex));
}

std::string CasePlayer::ConvertStringToHex() {
  const Text text = RandomText(random_, kLongestText);
  const bool upper = random_.Flag();
  transcript_.Line("ConvertStringToHex " + Shown(text) + " " + Shown(upper));
  return "  " + Shown(component_.ConvertStringToHex(text, upper));
}

}  // namespace latchkey::test
