#include "cli/platform/file_handle.h"

#include <unistd.h>

namespace latchkey::cli {

void FileTrait::Close(Type file) noexcept { ::close(static_cast<int>(file)); }

}  // namespace latchkey::cli
