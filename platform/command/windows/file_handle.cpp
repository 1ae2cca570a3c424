#include "platform/command/file_handle.h"

#include <windows.h>

namespace latchkey::platform {

void FileTrait::Close(Type file) { CloseHandle(reinterpret_cast<HANDLE>(file)); }

}  // namespace latchkey::platform
