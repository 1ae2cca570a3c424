// The server keeps its type library until its last object is released, not until it is unloaded.
#include <array>
#include <atomic>
#include <cstdio>
#include <functional>
#include <thread>
#include <utility>
#include <vector>

#include "tests/com/late_bound/late_client.h"
#include "tests/com/server/loaded_server.h"

namespace latchkey::test {
namespace {

// Looks a member up by name, which reads the members of the class.
DISPID FindMember(IDispatch* object, const wchar_t* name) { return LateClient(object).IdOf(name); }

using TypeLibraryLifeTest = LoadedServerTest;

UniqueInterface<_clsTimer> NewTimer(const LoadedServer& server) {
  return server.Create<_clsTimer>(CLSID_clsTimer, IID__clsTimer);
}

UniqueInterface<_clsMain> NewMain(const LoadedServer& server) {
  return server.Create<_clsMain>(CLSID_clsMain, IID__clsMain);
}

TEST_F(TypeLibraryLifeTest, IsKeptUntilTheLastObjectIsReleased) {
  auto main = NewMain(server);
  auto timer = NewTimer(server);
  const auto library = server.TypeLibrary();
  EXPECT_EQ(FindMember(timer.Get(), L"Start"), 1);
  EXPECT_GT(ReferencesTo(library.Get()), 1U);
  timer.Reset();
  EXPECT_GT(ReferencesTo(library.Get()), 1U);
  main.Reset();
  EXPECT_EQ(ReferencesTo(library.Get()), 1U);
}

TEST_F(TypeLibraryLifeTest, IsReadAgainForALaterObject) {
  auto timer = NewTimer(server);
  const auto library = server.TypeLibrary();
  for (int i = 0; i < 3; ++i) {
    timer.Reset();
    EXPECT_EQ(ReferencesTo(library.Get()), 1U);
    timer = NewTimer(server);
    EXPECT_EQ(FindMember(timer.Get(), L"GetElapsedTime"), 2);
    EXPECT_GT(ReferencesTo(library.Get()), 1U);
  }
}

// Several threads make and release objects, so that the last one is often released while another is
// made. A library released too early crashes the look-up; one released too seldom stays.
TEST_F(TypeLibraryLifeTest, ThreadsThatMakeAndReleaseObjectsShareIt) {
  const auto library = server.TypeLibrary();
  std::atomic<int> wrong{0};
  std::array<std::thread, 4> threads;
  for (std::thread& thread : threads) {
    thread = std::thread([&] {
      const Apartment own;
      for (int round = 0; round < 500; ++round) {
        const auto timer = NewTimer(server);
        wrong += FindMember(timer.Get(), L"GetElapsedTime") == 2 ? 0 : 1;
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(wrong, 0);
  EXPECT_EQ(ReferencesTo(library.Get()), 1U);
  EXPECT_EQ(server.CanUnloadNow(), S_OK);
}

// Runs once, before the next reference to the type library is released.
std::function<void()> beforeRelease;
using ReleaseFunction = ULONG(STDMETHODCALLTYPE*)(ITypeLib*);
ReleaseFunction realRelease = nullptr;

ULONG STDMETHODCALLTYPE WatchedRelease(ITypeLib* library) {
  if (const auto run = std::exchange(beforeRelease, nullptr)) run();
  return realRelease(library);
}

// Replaces the type library's Release and returns the earlier function.
ReleaseFunction ReplaceRelease(ITypeLib* library, ReleaseFunction function) {
  constexpr int kSlot = 2;
  void** const slot = *reinterpret_cast<void***>(library) + kSlot;
  DWORD before = 0;
  EXPECT_TRUE(VirtualProtect(slot, sizeof *slot, PAGE_READWRITE, &before));
  return reinterpret_cast<ReleaseFunction>(std::exchange(*slot, reinterpret_cast<void*>(function)));
}

// Another thread makes an object while the last object releases the library: it is not blocked,
// does not get the library being released, and the module is in use throughout.
TEST_F(TypeLibraryLifeTest, AnObjectMadeWhileItIsReleasedReadsItsOwn) {
  auto timer = NewTimer(server);
  const auto library = server.TypeLibrary();
  HRESULT unused = S_OK;
  DISPID found = DISPID_UNKNOWN;
  realRelease = ReplaceRelease(library.Get(), WatchedRelease);
  beforeRelease = [&] {
    unused = server.CanUnloadNow();
    std::thread([&] {
      const Apartment own;
      found = FindMember(NewTimer(server).Get(), L"GetElapsedTime");
    }).join();
  };
  timer.Reset();
  ReplaceRelease(library.Get(), realRelease);
  EXPECT_EQ(unused, S_FALSE);
  EXPECT_EQ(found, 2);
  EXPECT_EQ(ReferencesTo(library.Get()), 1U);
  EXPECT_EQ(server.CanUnloadNow(), S_OK);
}

// Ends the program: the imported function's signature is unknown, so this cannot return.
[[noreturn]] void FailUnload() {
  std::fputs("the unloading DLL called a function of COM or Automation\n", stderr);
  std::fflush(stderr);
  TerminateProcess(GetCurrentProcess(), 3);
  std::abort();
}

template <class Target>
Target* At(HMODULE module, std::uintptr_t offset) {
  return reinterpret_cast<Target*>(reinterpret_cast<std::uintptr_t>(module) + offset);
}

// Replaces every function that the module imports from a library. Returns their number.
int TrapImports(HMODULE module, const char* library) {
  const auto* const headers = At<IMAGE_NT_HEADERS>(
      module, static_cast<std::uintptr_t>(At<IMAGE_DOS_HEADER>(module, 0)->e_lfanew));
  const IMAGE_DATA_DIRECTORY& imports =
      headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
  int count = 0;
  auto* entry = At<IMAGE_IMPORT_DESCRIPTOR>(module, imports.VirtualAddress);
  for (; entry->Name != 0; ++entry) {
    if (lstrcmpiA(At<char>(module, entry->Name), library) != 0) continue;
    auto* address = At<void*>(module, entry->FirstThunk);
    for (; *address != nullptr; ++address, ++count) {
      DWORD before = 0;
      EXPECT_TRUE(VirtualProtect(address, sizeof *address, PAGE_READWRITE, &before));
      *address = reinterpret_cast<void*>(&FailUnload);
    }
  }
  return count;
}

TEST_F(TypeLibraryLifeTest, UnloadingCallsNothingOfComOrAutomation) {
  auto timer = NewTimer(server);
  EXPECT_EQ(FindMember(timer.Get(), L"Start"), 1);
  const auto library = server.TypeLibrary();
  timer.Reset();
  EXPECT_EQ(ReferencesTo(library.Get()), 1U);
  EXPECT_GT(TrapImports(server.Module(), "oleaut32.dll"), 0);
  EXPECT_GT(TrapImports(server.Module(), "ole32.dll"), 0);
  server.Unload();
  EXPECT_EQ(GetModuleHandleW(L"latchkey.dll"), nullptr);
  EXPECT_EQ(ReferencesTo(library.Get()), 1U);
}

}  // namespace
}  // namespace latchkey::test
