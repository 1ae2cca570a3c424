// Access rights of a file.
#pragma once

#include <windows.h>

#include <string>

namespace latchkey::cli {

// Gives a file that is open with WRITE_DAC exactly the access rights of another. If the system
// refuses or the other file does not exist, the file keeps its rights.
void CopyRights(const std::wstring& from, HANDLE to);

}  // namespace latchkey::cli
