#include "cli/progress.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>

#include "cli/platform/terminal.h"

namespace latchkey::cli {
namespace {

constexpr auto kInterval = std::chrono::milliseconds(200);
constexpr std::size_t kWidestBar = 40;

// Three or four digits and a unit: "1.2 GB".
std::string Size(double bytes) {
  static constexpr std::array kUnits{"B", "kB", "MB", "GB", "TB", "PB"};
  std::size_t unit = 0;
  while (bytes >= 999.5 && unit + 1 < kUnits.size()) {
    bytes /= 1000;
    ++unit;
  }
  std::array<char, 32> text{};
  std::snprintf(text.data(), text.size(), unit > 0 && bytes < 99.5 ? "%.1f %s" : "%.0f %s", bytes,
                kUnits.at(unit));
  return text.data();
}

std::string Duration(double seconds) {
  const auto whole = std::llround(seconds);
  std::array<char, 32> text{};
  if (whole >= 3600) {
    std::snprintf(text.data(), text.size(), "%lld:%02lld:%02lld", whole / 3600, whole / 60 % 60,
                  whole % 60);
  } else {
    std::snprintf(text.data(), text.size(), "%lld:%02lld", whole / 60, whole % 60);
  }
  return text.data();
}

std::string Bar(double share, std::size_t width) {
  const auto filled = static_cast<std::size_t>(share * static_cast<double>(width));
  return "[" + std::string(filled, '=') + std::string(width - filled, ' ') + "] ";
}

}  // namespace

std::string ProgressLine(std::uint64_t done, std::optional<std::uint64_t> total, double seconds,
                         unsigned columns) {
  const auto bytes = static_cast<double>(done);
  const double rate = seconds > 0 ? bytes / seconds : 0;
  std::string figures = Size(bytes) + "  " + Size(rate) + "/s";
  if (!total || *total == 0) return figures;

  const double share = std::min(1.0, bytes / static_cast<double>(*total));
  std::array<char, 8> percent{};
  std::snprintf(percent.data(), percent.size(), "%3d%% ", static_cast<int>(share * 100));
  const double left = rate > 0 ? (static_cast<double>(*total) - bytes) / rate : 0;
  const std::string rest = figures + "  " + Duration(std::max(0.0, left)) + " left";
  const std::size_t room = columns > rest.size() + 10 ? columns - rest.size() - 10 : 0;
  return percent.data() + (room < 5 ? std::string() : Bar(share, std::min(room, kWidestBar))) +
         rest;
}

Progress::Progress(std::optional<std::uint64_t> total, bool quiet)
    : total_(total), shown_(!quiet && IsTerminal(StandardStream::Error)) {}

Progress::~Progress() { Erase(); }

void Progress::Erase() noexcept {
  if (drawn_ > 0) WriteText(StandardStream::Error, eraser_);
  drawn_ = 0;
}

void Progress::Advance(std::uint64_t bytes) {
  done_ += bytes;
  if (!shown_) return;
  const Clock::time_point now = Clock::now();
  if (now >= next_) Show(now);
}

void Progress::Show(Clock::time_point now) {
  next_ = now + kInterval;
  const double seconds = std::chrono::duration<double>(now - start_).count();
  std::string line = ProgressLine(done_, total_, seconds, TerminalColumns(StandardStream::Error));
  const std::size_t length = line.size();
  line.resize(std::max(length, drawn_), ' ');
  line.insert(0, 1, '\r');
  eraser_ = "\r" + std::string(length, ' ') + "\r";
  drawn_ = length;
  WriteText(StandardStream::Error, line);
}

}  // namespace latchkey::cli
