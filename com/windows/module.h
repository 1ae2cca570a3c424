// The DLL as a module: where it is, and how much of it is in use.
#pragma once

#include <string>

#include "com/windows/automation_prelude.h"

namespace latchkey::com {

// Counts as one use of the DLL from its construction to its destruction. Every object and every
// class factory holds one, and every entry point while it runs. The last use releases the type
// library that the module keeps before it ends. Any thread.
class ModuleUse {
 public:
  ModuleUse() noexcept { Add(); }
  ModuleUse(const ModuleUse&) = delete;
  ModuleUse& operator=(const ModuleUse&) = delete;
  ~ModuleUse() { Drop(); }

 private:
  static void Add() noexcept;
  static void Drop() noexcept;
};

// A use that outlives every scope. Any thread may end it.
void LockModule() noexcept;

// Ends one such use; false when none is left to end.
[[nodiscard]] bool UnlockModule() noexcept;

// True when nothing uses the DLL, so that COM may unload it.
[[nodiscard]] bool ModuleIsUnused() noexcept;

// The full path of the DLL. Raises InvalidProcedureCall when the system does not tell it.
[[nodiscard]] std::wstring ModulePath();

}  // namespace latchkey::com
