// How long the server keeps its type library: until the last of its objects is released, and not
// until it is unloaded.
#include <atomic>
#include <cstdio>
#include <thread>
#include <vector>

#include "tests/clients/server/loaded_server.h"

namespace latchkey::test {
namespace {

// Looks a member up by name, which reads the members of the class.
DISPID FindMember(IDispatch* object, const wchar_t* name) {
  DISPID id = DISPID_UNKNOWN;
  auto* text = const_cast<wchar_t*>(name);
  EXPECT_EQ(object->GetIDsOfNames(IID_NULL, &text, 1, LOCALE_USER_DEFAULT, &id), S_OK);
  return id;
}

UniqueInterface<_clsTimer> NewTimer(const LoadedServer& server) {
  return server.Create<_clsTimer>(CLSID_clsTimer, IID__clsTimer);
}

UniqueInterface<_clsMain> NewMain(const LoadedServer& server) {
  return server.Create<_clsMain>(CLSID_clsMain, IID__clsMain);
}

TEST(TypeLibraryLifeTest, IsKeptUntilTheLastObjectIsReleased) {
  const Apartment apartment;
  const LoadedServer server;
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

TEST(TypeLibraryLifeTest, IsReadAgainForALaterObject) {
  const Apartment apartment;
  const LoadedServer server;
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

// Objects come and go on several threads, so that the last one often goes while another is made. A
// library released too early crashes the look-up, one released too seldom stays.
TEST(TypeLibraryLifeTest, ThreadsThatMakeAndReleaseObjectsShareIt) {
  const Apartment apartment;
  const LoadedServer server;
  const auto library = server.TypeLibrary();
  std::atomic<int> wrong{0};
  std::vector<std::thread> threads;
  for (int i = 0; i < 4; ++i) {
    threads.emplace_back([&] {
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

// Ends the program: how the imported function is called is not known, so it cannot return.
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

TEST(TypeLibraryLifeTest, UnloadingCallsNothingOfComOrAutomation) {
  const Apartment apartment;
  LoadedServer server;
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
