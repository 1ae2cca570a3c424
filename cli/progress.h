// A progress line on the terminal.
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>

namespace latchkey::cli {

// The line's text: bytes done, share, bar, rate and time left, as far as they are known.
[[nodiscard]] std::string ProgressLine(std::uint64_t done, std::optional<std::uint64_t> total,
                                       double seconds, unsigned columns);

// Shows the line on standard error if that is a terminal, from the end of the first second on. The
// destructor erases it.
class Progress {
 public:
  Progress(std::optional<std::uint64_t> total, bool quiet);
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;
  ~Progress();

  void Advance(std::uint64_t bytes);

  // Erases the line, so that others can be written; Advance shows it again.
  void Hide() noexcept;

 private:
  using Clock = std::chrono::steady_clock;

  void Show(Clock::time_point now);

  std::optional<std::uint64_t> total_;
  bool shown_;
  std::uint64_t done_ = 0;
  Clock::time_point start_ = Clock::now();
  Clock::time_point next_ = start_ + std::chrono::seconds(1);
  std::size_t drawn_ = 0;  // characters on the terminal
  std::string eraser_;     // erases them; made early, so that the destructor allocates nothing
};

}  // namespace latchkey::cli
