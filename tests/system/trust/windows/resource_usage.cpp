#include "tests/system/trust/resource_usage.h"

#include <windows.h>

#include <psapi.h>
#include <wincrypt.h>

#include <array>
#include <atomic>
#include <stdexcept>
#include <string_view>

namespace latchkey::test {
namespace {

std::atomic<std::int64_t> openHandles{0};

BOOL Opened(BOOL done) {
  if (done) ++openHandles;
  return done;
}
BOOL Closed(BOOL done) {
  if (done) --openHandles;
  return done;
}

BOOL WINAPI CountedAcquire(HCRYPTPROV* provider, LPCSTR container, LPCSTR name, DWORD type,
                           DWORD flags) {
  return Opened(CryptAcquireContextA(provider, container, name, type, flags));
}
BOOL WINAPI CountedRelease(HCRYPTPROV provider, DWORD flags) {
  return Closed(CryptReleaseContext(provider, flags));
}
BOOL WINAPI CountedCreateHash(HCRYPTPROV provider, ALG_ID algorithm, HCRYPTKEY key, DWORD flags,
                              HCRYPTHASH* hash) {
  return Opened(CryptCreateHash(provider, algorithm, key, flags, hash));
}
BOOL WINAPI CountedDestroyHash(HCRYPTHASH hash) { return Closed(CryptDestroyHash(hash)); }
BOOL WINAPI CountedDeriveKey(HCRYPTPROV provider, ALG_ID algorithm, HCRYPTHASH hash, DWORD flags,
                             HCRYPTKEY* key) {
  return Opened(CryptDeriveKey(provider, algorithm, hash, flags, key));
}
BOOL WINAPI CountedDestroyKey(HCRYPTKEY key) { return Closed(CryptDestroyKey(key)); }

struct Replacement {
  std::string_view name;
  void* function;
};

template <class Structure>
const Structure* At(HMODULE module, std::uintptr_t offset) {
  return reinterpret_cast<const Structure*>(reinterpret_cast<std::uintptr_t>(module) + offset);
}

const IMAGE_IMPORT_DESCRIPTOR* ImportsOf(HMODULE module) {
  const auto* const dos = At<IMAGE_DOS_HEADER>(module, 0);
  const auto* const headers =
      At<IMAGE_NT_HEADERS>(module, static_cast<std::uintptr_t>(dos->e_lfanew));
  const auto& directory = headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
  return At<IMAGE_IMPORT_DESCRIPTOR>(module, directory.VirtualAddress);
}

void Write(void** slot, void* value) {
  DWORD before = 0;
  VirtualProtect(slot, sizeof(value), PAGE_READWRITE, &before);
  *slot = value;
  VirtualProtect(slot, sizeof(value), before, &before);
}

// Replaces a function that a module imports by one of this program. The module calls it only
// through its import table.
void ReplaceImport(HMODULE module, const Replacement& replacement) {
  for (const auto* from = ImportsOf(module); from->Name != 0; ++from) {
    const auto* names = At<IMAGE_THUNK_DATA>(module, from->OriginalFirstThunk);
    const auto* slots = At<IMAGE_THUNK_DATA>(module, from->FirstThunk);
    for (; names->u1.AddressOfData != 0; ++names, ++slots) {
      if (IMAGE_SNAP_BY_ORDINAL(names->u1.Ordinal)) continue;
      const auto* const entry =
          At<IMAGE_IMPORT_BY_NAME>(module, static_cast<std::uintptr_t>(names->u1.AddressOfData));
      if (replacement.name != reinterpret_cast<const char*>(entry->Name)) continue;
      void* const slot = const_cast<IMAGE_THUNK_DATA*>(slots);
      return Write(static_cast<void**>(slot), replacement.function);
    }
  }
  throw std::runtime_error("the DLL does not import " + std::string(replacement.name));
}

// The busy blocks of all heaps.
std::uint64_t HeapBytes() {
  std::array<HANDLE, 64> heaps{};
  const DWORD count = GetProcessHeaps(static_cast<DWORD>(heaps.size()), heaps.data());
  std::uint64_t bytes = 0;
  for (DWORD i = 0; i < count && i < heaps.size(); ++i) {
    HeapLock(heaps[i]);
    PROCESS_HEAP_ENTRY entry = {};
    while (HeapWalk(heaps[i], &entry)) {
      if ((entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) != 0) bytes += entry.cbData;
    }
    HeapUnlock(heaps[i]);
  }
  return bytes;
}

// Handles of kernel objects are multiples of 4, and the lowest free one is used next.
std::uint64_t CountHandles() {
  constexpr std::uintptr_t kHighest = 0x8000;
  std::uint64_t handles = 0;
  for (std::uintptr_t handle = 4; handle < kHighest; handle += 4) {
    DWORD flags = 0;
    if (!GetHandleInformation(reinterpret_cast<HANDLE>(handle), &flags)) continue;
    ++handles;
    // Those above the highest would not be counted.
    if (handle >= kHighest / 4 * 3) throw std::runtime_error("too many handles to count");
  }
  return handles;
}

// Wine 8 returns 0, so each handle is queried.
std::uint64_t SystemHandles() {
  DWORD handles = 0;
  const BOOL isKnown = GetProcessHandleCount(GetCurrentProcess(), &handles);
  return isKnown && handles > 0 ? handles : CountHandles();
}

template <class Function>
void* AddressOf(Function* function) {
  return reinterpret_cast<void*>(function);
}

}  // namespace

void CountProviderHandles() {
  const HMODULE server = GetModuleHandleW(L"latchkey.dll");
  if (server == nullptr) throw std::runtime_error("the DLL is not loaded");
  for (const Replacement& replacement :
       {Replacement{"CryptAcquireContextA", AddressOf(CountedAcquire)},
        Replacement{"CryptReleaseContext", AddressOf(CountedRelease)},
        Replacement{"CryptCreateHash", AddressOf(CountedCreateHash)},
        Replacement{"CryptDestroyHash", AddressOf(CountedDestroyHash)},
        Replacement{"CryptDeriveKey", AddressOf(CountedDeriveKey)},
        Replacement{"CryptDestroyKey", AddressOf(CountedDestroyKey)}}) {
    ReplaceImport(server, replacement);
  }
}

ResourceUsage CurrentUsage() {
  PROCESS_MEMORY_COUNTERS memory = {};
  if (!GetProcessMemoryInfo(GetCurrentProcess(), &memory, sizeof(memory))) {
    throw std::runtime_error("the system does not report the process's resources");
  }
  return {memory.WorkingSetSize, HeapBytes(), SystemHandles(), openHandles};
}

}  // namespace latchkey::test
