#include "cli/platform/environment.h"

#include <windows.h>

#include <cstdlib>
#include <cstring>

#include "cli/platform/windows/wide_secret.h"
#include "platform/windows/wide_text.h"

namespace latchkey::cli {
namespace {

// The C run-time's own copy, made when the process started.
void WipeRunTimeCopy(const std::string& name) {
  if (char* const copy = std::getenv(name.c_str())) SecureWipe(copy, std::strlen(copy));
}

}  // namespace

std::optional<WipedBytes> TakeVariable(const std::string& name, TextForm form) {
  const std::wstring wideName = platform::Widened(name);
  const DWORD room = GetEnvironmentVariableW(wideName.c_str(), nullptr, 0);
  if (room == 0) return std::nullopt;
  WipedVector<wchar_t> value(room);
  const DWORD length = GetEnvironmentVariableW(wideName.c_str(), value.data(), room);
  value.resize(length);
  // A value of the same length overwrites the old one in memory.
  SetEnvironmentVariableW(wideName.c_str(), std::wstring(length, L'x').c_str());
  SetEnvironmentVariableW(wideName.c_str(), nullptr);
  WipeRunTimeCopy(name);
  return BytesOf(value, form, name);
}

}  // namespace latchkey::cli
