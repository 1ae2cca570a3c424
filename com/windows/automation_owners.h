// Owners of Automation's interface pointers and strings.
#pragma once

#include "base/unique_handle.h"
#include "com/windows/automation_prelude.h"
#include "platform/windows/unique_bstr.h"

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

using platform::UniqueBstr;

}  // namespace latchkey::com
