#include "com/windows/module.h"

#include "com/windows/interface_members.h"
#include "com/windows/type_library.h"
#include "latchkey/fault.h"

namespace latchkey::com {
namespace {

constexpr DWORD kLongestPath = 32767;  // of a file on Windows, in characters

// Guards the two counts, and blocks new users while the last one takes the module's kept pointers.
// Held for a few instructions, never during a call of another library.
SRWLOCK usesLock = SRWLOCK_INIT;
long moduleUses = 0;
long moduleLocks = 0;  // separate, so that an extra unlock does not remove an object's use

class UsesLock {
 public:
  UsesLock() noexcept { AcquireSRWLockExclusive(&usesLock); }
  UsesLock(const UsesLock&) = delete;
  UsesLock& operator=(const UsesLock&) = delete;
  ~UsesLock() { ReleaseSRWLockExclusive(&usesLock); }
};

// Ends one use, unless it is the last and the module keeps the type library. In that case releases
// the library instead, while the use still counts; another thread that begins a use meanwhile loads
// its own. Returns true if the use has ended.
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

// The module that contains this code, under any name.
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
