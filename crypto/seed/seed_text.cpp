#include "crypto/seed/seed_text.h"

#include <cmath>
#include <string>

#include "base/checked_arithmetic.h"
#include "base/secure_memory.h"
#include "crypto/crypto_state.h"
#include "crypto/seed/currency.h"
#include "crypto/seed/digits_only.h"
#include "crypto/seed/drive_space.h"
#include "crypto/seed/window_count.h"
#include "crypto/value_text.h"

namespace latchkey {
namespace {

constexpr std::int32_t kVolumeShift = 3;

// The readings that one seed is made from.
struct Readings {
  double pi = std::atan(1.0) * 4.0;
  std::int32_t ticks = 0;
  double windowCount = 0;
  double handleSum = 0;
  std::int32_t volumeId = 0;
  double volumeFigure = 0;
  Currency free;
  Currency used;
};

double Now() { return Probe().Now(); }

Text DecimalText(std::int32_t value) {
  const std::string digits = std::to_string(value);
  return {digits.begin(), digits.end()};
}

// The characters of a volume name or file system name.
Text NameText(const std::string& bytes) {
  const CodePage& codePage = ThreadCodePage();
  Text text;
  for (const char byte : bytes) text += codePage.CharacterOf(static_cast<std::uint8_t>(byte));
  return text;
}

void ReadVolume(Readings& readings) {
  const auto volume = Probe().GetVolumeInformationA(kSystemDrive);
  if (!volume) return;
  readings.volumeId = ShiftLeft(static_cast<std::int32_t>(volume->serialNumber), kVolumeShift);
  const Text names = NameText(volume->fileSystemName) + DecimalText(readings.volumeId) +
                     NameText(volume->volumeName);
  readings.volumeFigure = NumberIn(DigitsOnly(TextView(names)));
}

// The quotient that replaces a byte count if the drive cannot be queried.
Currency TickShare(std::int32_t ticks, double divisor) {
  const std::int32_t wholeDivisor = RoundToLong(divisor);
  if (wholeDivisor == 0) throw Fault(FaultNumber::DivisionByZero);
  return Currency::FromWhole(NarrowTo<std::int32_t>(std::int64_t{ticks} / wholeDivisor));
}

void ReadDriveSpace(Readings& readings) {
  DriveSpaceInfo info;
  if (GetDriveSpace(kSystemDrive, info)) {
    readings.free = info.FreeBytes;
    readings.used = info.UsedBytes;
  } else {
    readings.free = TickShare(readings.ticks, readings.windowCount);
    readings.used = TickShare(readings.ticks, readings.handleSum);
  }
}

// One formula for each digit; every other digit, including negative ones, takes the last.
double Seed(std::int32_t digit, const Readings& r) {
  switch (digit) {
    case 0:
      return CheckedDivide((Currency::FromDouble(Now() + r.ticks) + r.used).ToDouble(), r.pi);
    case 1:
      return Now() + r.pi + CheckedSquareRoot(r.free.ToDouble()) + r.windowCount;
    case 2:
      return CheckedSquareRoot(Now()) + r.ticks + r.pi + r.handleSum;
    case 3:
      return (Now() + r.volumeFigure + r.pi + r.volumeId) / 0.05;
    case 4:
      return CheckedDivide(Now() + r.ticks + r.volumeId, r.pi);
    case 5:
      return (r.ticks + CheckedSquareRoot(r.volumeId + r.volumeFigure)) / 0.05;
    case 6:
      return CheckedDivide((Currency::FromDouble(r.ticks + r.pi + r.volumeId) + r.free).ToDouble(),
                           r.volumeFigure / r.pi);
    case 7:
      return (r.volumeId + r.pi + r.handleSum) / 0.75 * r.windowCount;
    case 8: {
      const std::int32_t sum = CheckedAdd(r.volumeId, r.ticks);
      return (Currency::FromWhole(sum) + r.used).ToDouble() / 0.75;
    }
    case 9: {
      const Currency root = Currency::FromDouble(CheckedSquareRoot(r.used.ToDouble()));
      return (r.free + root + Currency::FromWhole(r.volumeId)).ToDouble() * r.pi;
    }
    default:
      return CheckedDivide(Now() + r.ticks + r.volumeId, r.pi + r.volumeFigure);
  }
}

}  // namespace

std::int32_t GetTickDigit() {
  constexpr std::size_t kTextLength = 5;
  const std::string text = std::to_string(Probe().SignedTickCount());
  const std::size_t start = text.size() > kTextLength ? text.size() - kTextLength : 0;
  std::int32_t value = std::stoi(text.substr(start));
  while (value > 9) {
    std::int32_t sum = 0;
    for (const char digit : std::to_string(value)) sum += digit - '0';
    value = sum;
  }
  return value;
}

std::int32_t ShiftLeft(std::int32_t value, std::int32_t bitCount) noexcept {
  if (bitCount < 0 || bitCount > 31) return 0;
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(value) << bitCount);
}

Text BuildSeedText() {
  Readings readings;
  const WipeAtExit wipeReadings(readings);
  readings.ticks = Probe().SignedTickCount();
  const std::int32_t digit = GetTickDigit();
  CountWindows(readings.windowCount, readings.handleSum);
  ReadVolume(readings);
  ReadDriveSpace(readings);
  Text seedText = platform::TextOfDouble(CheckedResult(Seed(digit, readings)));
  const WipeAtExit wipeSeedText(seedText);
  Text doubled;
  const WipeAtExit wipeDoubled(doubled);
  doubled.reserve(2 * seedText.size());  // a text that grows leaves its memory unwiped
  doubled.append(seedText).append(seedText);
  return DigitsOnly(TextView(doubled));
}

}  // namespace latchkey
