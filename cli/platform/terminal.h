// The terminal and the standard streams, for text that people and programs read.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "base/secure_memory.h"

namespace latchkey::cli {

enum class StandardStream { Output, Error };

[[nodiscard]] bool IsTerminal(StandardStream stream) noexcept;

// The columns of the terminal behind a stream; 80 where there is none to ask.
[[nodiscard]] unsigned TerminalColumns(StandardStream stream) noexcept;

// Writes UTF-8 text as it is, without converting line ends. False when the system refuses.
bool WriteText(StandardStream stream, std::string_view text) noexcept;

// Asks for a line on the terminal of the process, wherever its streams lead, with echo off. The
// line is without its end: bytes as typed on Linux, codes of the system's code page on Windows.
// Nothing without a terminal, and for an end of input before any line. Raises FileError when the
// terminal fails, and for a character that the code page does not have.
[[nodiscard]] std::optional<WipedBytes> ReadHiddenLine(std::string_view prompt);

}  // namespace latchkey::cli
