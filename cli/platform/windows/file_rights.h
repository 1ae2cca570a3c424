// Who may use a file.
#pragma once

#include <windows.h>

#include <string>

namespace latchkey::cli {

// Gives a file that is open with WRITE_DAC exactly the access rights of another. When the system
// refuses, or there is no other, the file keeps its own.
void CopyRights(const std::wstring& from, HANDLE to);

}  // namespace latchkey::cli
