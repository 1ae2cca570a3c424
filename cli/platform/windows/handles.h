// Conversions between the portable owner of a file and Windows' handles.
#pragma once

#include <windows.h>

#include <string>

#include "cli/platform/file_error.h"
#include "cli/platform/file_handle.h"

namespace latchkey::cli {

[[nodiscard]] inline HANDLE HandleOf(const UniqueFile& file) noexcept {
  return reinterpret_cast<HANDLE>(file.Get());
}

[[nodiscard]] inline UniqueFile Owned(HANDLE handle) noexcept {
  return UniqueFile(reinterpret_cast<std::intptr_t>(handle));
}

// Throws the system's reason for the call that has just failed.
[[noreturn]] inline void ThrowLastError(const char* action, const std::string& name) {
  throw FileError(static_cast<int>(GetLastError()), action, name);
}

// A new handle for the same object.
[[nodiscard]] inline UniqueFile CopyOf(HANDLE handle, const char* action, const std::string& name) {
  HANDLE copy = nullptr;
  const HANDLE process = GetCurrentProcess();
  if (handle == nullptr || handle == INVALID_HANDLE_VALUE) {
    throw FileError(ERROR_INVALID_HANDLE, action, name);
  }
  if (!DuplicateHandle(process, handle, process, &copy, 0, FALSE, DUPLICATE_SAME_ACCESS)) {
    ThrowLastError(action, name);
  }
  return Owned(copy);
}

}  // namespace latchkey::cli
