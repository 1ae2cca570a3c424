#include "com/windows/module.h"

#include <atomic>

#include "diagnostics/fault.h"

namespace latchkey::com {
namespace {

constexpr DWORD kLongestPath = 32767;  // of a file on Windows, in characters

std::atomic<long> moduleUses{0};

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

void ModuleUse::Add() noexcept { ++moduleUses; }

void ModuleUse::Drop() noexcept { --moduleUses; }

bool ModuleIsUnused() noexcept { return moduleUses == 0; }

std::wstring ModulePath() {
  std::wstring path(kLongestPath + 1, L'\0');
  const DWORD length =
      GetModuleFileNameW(ThisModule(), path.data(), static_cast<DWORD>(path.size()));
  if (length == 0 || length >= path.size()) throw Fault(FaultNumber::InvalidProcedureCall);
  path.resize(length);
  return path;
}

}  // namespace latchkey::com
