// The terminal and the standard streams, for text that people and programs read.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "base/secure_memory.h"
#include "cli/platform/environment.h"

namespace latchkey::cli {

enum class StandardStream { Output, Error };

[[nodiscard]] bool IsTerminal(StandardStream stream) noexcept;

// The columns of a stream's terminal; 80 if it is not a terminal.
[[nodiscard]] unsigned TerminalColumns(StandardStream stream) noexcept;

// Writes UTF-8 text without converting line ends. Returns false if the system call fails.
bool WriteText(StandardStream stream, std::string_view text) noexcept;

// Asks for a line on the terminal of the process, even if its streams are redirected. Echo is off,
// also after the process was stopped and continued. Returns the line without its end; an empty line
// if the input ends. Nothing if the process has no terminal. Raises FileError if the terminal
// fails, and for text that is not in the form.
[[nodiscard]] std::optional<WipedBytes> ReadHiddenLine(const std::string& prompt, TextForm form);

}  // namespace latchkey::cli
