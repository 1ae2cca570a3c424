// Owners of Automation's interface pointers, strings and variants.
#pragma once

#include "base/secure_memory.h"
#include "base/unique_handle.h"
#include "com/windows/automation_prelude.h"

namespace latchkey::com {

template <class Interface>
struct InterfaceTrait {
  using Type = Interface*;
  static Type None() noexcept { return nullptr; }
  static void Close(Type pointer) noexcept { pointer->Release(); }
};

// Owns one reference.
template <class Interface>
using UniqueInterface = UniqueHandle<InterfaceTrait<Interface>>;

struct BstrTrait {
  using Type = BSTR;
  static Type None() noexcept { return nullptr; }
  static void Close(Type text) noexcept {
    SecureWipe(text, SysStringByteLen(text));
    SysFreeString(text);
  }
};

// Owns a string that may be secret: it is wiped before it is freed.
using UniqueBstr = UniqueHandle<BstrTrait>;

}  // namespace latchkey::com
