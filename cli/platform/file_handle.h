// An open file of the operating system.
#pragma once

#include <cstddef>
#include <cstdint>

#include "base/unique_handle.h"

namespace latchkey::cli {

// The type of a file: a descriptor on Linux, a HANDLE on Windows.
struct FileTrait {
  using Type = std::intptr_t;
  static Type None() noexcept { return -1; }
  static void Close(Type file) noexcept;
};

using UniqueFile = UniqueHandle<FileTrait>;

// The times of a file in the system's units: nanoseconds since 1970 on Linux, 100 ns since 1601 on
// Windows.
struct FileTimes {
  std::int64_t accessed = 0;
  std::int64_t modified = 0;
};

}  // namespace latchkey::cli
