// Owners of Windows handles, and conversions between them and the portable owner of a file.
#pragma once

#include <windows.h>

#include <cstddef>
#include <string>

#include "base/unique_handle.h"
#include "cli/platform/file_error.h"
#include "cli/platform/file_handle.h"

namespace latchkey::cli {

// The most bytes to read or write in one call; a size that fits a DWORD.
inline constexpr std::size_t kLargestTransfer = std::size_t{1} << 30;

// A handle whose empty value is null, as for threads and tokens. For files it is -1: see
// UniqueFile.
struct ObjectTrait {
  using Type = HANDLE;
  static Type None() noexcept { return nullptr; }
  static void Close(Type handle) noexcept { CloseHandle(handle); }
};
using UniqueObject = UniqueHandle<ObjectTrait>;

// Memory that a function of the system allocated for its caller.
template <class Pointer>
struct LocalTrait {
  using Type = Pointer;
  static Type None() noexcept { return nullptr; }
  static void Close(Type memory) noexcept { LocalFree(memory); }
};
template <class Pointer>
using UniqueLocal = UniqueHandle<LocalTrait<Pointer>>;

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
  UniqueObject copy;
  const HANDLE process = GetCurrentProcess();
  if (handle == nullptr || handle == INVALID_HANDLE_VALUE) {
    throw FileError(ERROR_INVALID_HANDLE, action, name);
  }
  if (!DuplicateHandle(process, handle, process, copy.Put(), 0, FALSE, DUPLICATE_SAME_ACCESS)) {
    ThrowLastError(action, name);
  }
  return Owned(copy.Release());
}

}  // namespace latchkey::cli
