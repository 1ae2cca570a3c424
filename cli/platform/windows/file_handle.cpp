#include "cli/platform/file_handle.h"

#include <windows.h>

namespace latchkey::cli {

void FileTrait::Close(Type file) noexcept { CloseHandle(reinterpret_cast<HANDLE>(file)); }

}  // namespace latchkey::cli
