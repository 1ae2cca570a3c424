// The owner of an Automation string.
#pragma once

#include <windows.h>

#include <oleauto.h>

#include "base/secure_memory.h"
#include "base/unique_handle.h"

namespace latchkey::platform {

struct BstrTrait {
  using Type = BSTR;
  static Type None() noexcept { return nullptr; }
  static void Close(Type text) noexcept {
    SecureWipe(text, SysStringByteLen(text));
    SysFreeString(text);
  }
};

// Wipes its string before it frees it: it may be a secret.
using UniqueBstr = UniqueHandle<BstrTrait>;

}  // namespace latchkey::platform
