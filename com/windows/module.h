// The DLL as a module: where it is, and how much of it is in use.
#pragma once

#include <string>

#include "com/windows/automation_prelude.h"

namespace latchkey::com {

// Counts as one use of the DLL from its construction to its destruction. Every object and every
// class factory holds one, and every entry point while it runs. The last use releases the
// libraries that the module keeps, the type library and wininet, before it ends. Any thread.
class ModuleUse {
 public:
  ModuleUse() noexcept { Add(); }
  ModuleUse(const ModuleUse&) = delete;
  ModuleUse& operator=(const ModuleUse&) = delete;
  ~ModuleUse() { Drop(); }

  // A use that outlives every scope: IClassFactory::LockServer.
  static void Add() noexcept;
  static void Drop() noexcept;
};

// True when nothing uses the DLL, so that COM may unload it.
[[nodiscard]] bool ModuleIsUnused() noexcept;

// The full path of the DLL. Raises InvalidProcedureCall when the system does not tell it.
[[nodiscard]] std::wstring ModulePath();

}  // namespace latchkey::com
