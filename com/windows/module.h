// The DLL as a module: its path and its use count.
#pragma once

#include <string>

#include "com/windows/automation_prelude.h"

namespace latchkey::com {

// Counts as one use of the DLL from its construction to its destruction. Every object and every
// class factory holds one, and every entry point while it runs. Before it ends, the last use
// releases the type library that the module keeps. Any thread.
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

// Ends one such use; returns false if none is left.
[[nodiscard]] bool UnlockModule() noexcept;

// True if the DLL is unused, so that COM may unload it.
[[nodiscard]] bool ModuleIsUnused() noexcept;

// The full path of the DLL. Raises InvalidProcedureCall if the system fails to return it.
[[nodiscard]] std::wstring ModulePath();

}  // namespace latchkey::com
