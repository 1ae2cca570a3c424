// The form in which a secret text is read from the terminal or the environment.
#pragma once

namespace latchkey::cli {

enum class TextForm {
  // Exact bytes on Linux, codes of the system's code page on Windows.
  Bytes,
  // UTF-8, on Linux converted from the encoding of the locale, on Windows from UTF-16.
  Utf8
};

}  // namespace latchkey::cli
