#include "com/windows/module.h"

#include "base/fault.h"
#include "com/windows/interface_members.h"
#include "com/windows/type_library.h"

namespace latchkey::com {
namespace {

constexpr DWORD kLongestPath = 32767;  // of a file on Windows, in characters

// Guards the two counts, and keeps new users out while the last one takes what the module keeps.
// Held for a few instructions, never over a call of another library.
SRWLOCK usesLock = SRWLOCK_INIT;
long moduleUses = 0;
long moduleLocks = 0;  // apart, so that an unlock too many takes no object's use away

class UsesLock {
 public:
  UsesLock() noexcept { AcquireSRWLockExclusive(&usesLock); }
  UsesLock(const UsesLock&) = delete;
  UsesLock& operator=(const UsesLock&) = delete;
  ~UsesLock() { ReleaseSRWLockExclusive(&usesLock); }
};

// Ends one use, unless it is the last and the module keeps the type library: then that is released
// instead, while the use still counts. Another thread that begins a use meanwhile finds none and
// loads its own. True when the use has ended.
bool EndUseOrReleaseLibrary() noexcept {
  UniqueInterface<ITypeLib> library;
  MembersOfClasses members;
  const UsesLock lock;  // released first
  if (moduleUses == 1) {
    library = TakeTypeLibrary();
    members = TakeMembers();
  }
  if (library) return false;
  --moduleUses;
  return true;
}

// The module that holds this very code, whatever name it was loaded by.
HMODULE ThisModule() {
  HMODULE module = nullptr;
  const BOOL found = GetModuleHandleExW(
      GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
      reinterpret_cast<const wchar_t*>(&moduleUses), &module);
  if (found == FALSE) throw Fault(FaultNumber::InvalidProcedureCall);
  return module;
}

}  // namespace

void ModuleUse::Add() noexcept {
  const UsesLock lock;
  ++moduleUses;
}

void ModuleUse::Drop() noexcept {
  while (!EndUseOrReleaseLibrary()) {
  }
}

void LockModule() noexcept {
  const UsesLock lock;
  ++moduleLocks;
}

bool UnlockModule() noexcept {
  const UsesLock lock;
  if (moduleLocks == 0) return false;
  --moduleLocks;
  return true;
}

bool ModuleIsUnused() noexcept {
  const UsesLock lock;
  return moduleUses == 0 && moduleLocks == 0;
}

std::wstring ModulePath() {
  std::wstring path(kLongestPath + 1, L'\0');
  const DWORD length =
      GetModuleFileNameW(ThisModule(), path.data(), static_cast<DWORD>(path.size()));
  if (length == 0 || length >= path.size()) throw Fault(FaultNumber::InvalidProcedureCall);
  path.resize(length);
  return path;
}

}  // namespace latchkey::com
