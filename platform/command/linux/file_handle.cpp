#include "platform/command/file_handle.h"

#include <unistd.h>

namespace latchkey::platform {

void FileTrait::Close(Type file) { ::close(static_cast<int>(file)); }

}  // namespace latchkey::platform
