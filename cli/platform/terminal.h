// The terminal and the standard streams, for text that people and programs read.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "base/secure_memory.h"

namespace latchkey::cli {

enum class StandardStream { Output, Error };

[[nodiscard]] bool IsTerminal(StandardStream stream) noexcept;

// The columns of a stream's terminal; 80 if it is not a terminal.
[[nodiscard]] unsigned TerminalColumns(StandardStream stream) noexcept;

// Writes UTF-8 text without converting line ends. Returns false if the system call fails.
bool WriteText(StandardStream stream, std::string_view text) noexcept;

// Asks for a line on the terminal of the process, even if its streams are redirected, with echo
// off. Returns the line without its end: bytes as typed on Linux, codes of the system's code page
// on Windows. Nothing without a terminal, and for an end of input before any line. Raises FileError
// if the terminal fails, and for a character that the code page lacks.
[[nodiscard]] std::optional<WipedBytes> ReadHiddenLine(std::string_view prompt);

}  // namespace latchkey::cli
