// The owner of a folder that is being read.
#pragma once

#include <dirent.h>

#include "base/unique_handle.h"

namespace latchkey::platform {

struct FolderStreamTrait {
  using Type = DIR*;
  static Type None() noexcept { return nullptr; }
  static void Close(Type folder) noexcept { ::closedir(folder); }
};

using UniqueFolderStream = UniqueHandle<FolderStreamTrait>;

}  // namespace latchkey::platform
