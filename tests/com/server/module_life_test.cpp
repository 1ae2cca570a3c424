// Conditions for unloading the DLL, and use before and after unloading.
#include <future>
#include <thread>

#include "tests/com/server/loaded_server.h"
#include "tests/system/trust/windows/fatal_exceptions.h"

namespace latchkey::test {
namespace {

// Leaves the thread's data, a type library and a provider in the DLL.
void UseEverything(const LoadedServer& server) {
  const auto main = server.Create<_clsMain>(CLSID_clsMain, IID__clsMain);
  const auto api = server.Create<_clsCryptoAPI>(CLSID_clsCryptoAPI, IID__clsCryptoAPI);
  BSTR salt = nullptr;
  EXPECT_EQ(api.Get()->CreateRandom(8, VARIANT_TRUE, VARIANT_TRUE, VARIANT_FALSE, &salt), S_OK);
  EXPECT_EQ(Take(salt).size(), 8U);
  UniqueInterface<ITypeInfo> typeInfo;
  EXPECT_EQ(api.Get()->GetTypeInfo(0, LOCALE_USER_DEFAULT, typeInfo.Put()), S_OK);
  VARIANT null = OfType(VT_NULL);
  SAFEARRAY* array = nullptr;
  EXPECT_EQ(api.Get()->StringToByteArray(&null, &array), FaultCode(94));  // an exception inside
  EXPECT_TRUE(TakeErrorInfo().present);
}

using ModuleLifeTest = LoadedServerTest;

bool IsLoaded() { return GetModuleHandleW(L"latchkey.dll") != nullptr; }

TEST_F(ModuleLifeTest, TheModuleMayBeUnloadedBeforeAndAfterButNotWhileSomethingLives) {
  EXPECT_EQ(server.CanUnloadNow(), S_OK);
  {
    const auto factory = server.Factory(CLSID_clsTimer);
    EXPECT_EQ(server.CanUnloadNow(), S_FALSE);
  }
  EXPECT_EQ(server.CanUnloadNow(), S_OK);
  for (const CLSID& classId : {CLSID_clsMain, CLSID_clsCryptoAPI, CLSID_clsTimer}) {
    const auto object = server.Create<IUnknown>(classId, IID_IUnknown);
    EXPECT_EQ(server.CanUnloadNow(), S_FALSE);
  }
  EXPECT_EQ(server.CanUnloadNow(), S_OK);
}

TEST_F(ModuleLifeTest, LockServerKeepsTheModuleUntilItIsUnlocked) {
  server.Factory(CLSID_clsMain).Get()->LockServer(TRUE);
  server.Factory(CLSID_clsMain).Get()->LockServer(TRUE);
  EXPECT_EQ(server.CanUnloadNow(), S_FALSE);
  server.Factory(CLSID_clsTimer).Get()->LockServer(FALSE);
  EXPECT_EQ(server.CanUnloadNow(), S_FALSE);
  server.Factory(CLSID_clsTimer).Get()->LockServer(FALSE);
  EXPECT_EQ(server.CanUnloadNow(), S_OK);
}

TEST_F(ModuleLifeTest, AnExtraUnlockIsRefusedAndChangesNothing) {
  const auto factory = server.Factory(CLSID_clsTimer);
  EXPECT_EQ(factory.Get()->LockServer(FALSE), E_UNEXPECTED);
  EXPECT_EQ(server.CanUnloadNow(), S_FALSE);
  EXPECT_EQ(factory.Get()->LockServer(TRUE), S_OK);
  EXPECT_EQ(factory.Get()->LockServer(FALSE), S_OK);
  EXPECT_EQ(factory.Get()->LockServer(FALSE), E_UNEXPECTED);
  EXPECT_EQ(server.CanUnloadNow(), S_FALSE);
}

TEST_F(ModuleLifeTest, ARefusedObjectDoesNotCount) {
  void* object = nullptr;
  EXPECT_EQ(server.Factory(CLSID_clsMain).Get()->CreateInstance(nullptr, IID_IStream, &object),
            E_NOINTERFACE);
  EXPECT_EQ(server.CanUnloadNow(), S_OK);
}

TEST_F(ModuleLifeTest, TheModuleIsGoneOnceItIsUnloaded) {
  UseEverything(server);
  EXPECT_EQ(server.CanUnloadNow(), S_OK);
  server.Unload();
  EXPECT_FALSE(IsLoaded());
}

TEST_F(ModuleLifeTest, TheModuleMayBeLoadedAndUnloadedManyTimes) {
  server.Unload();
  for (int i = 0; i < 20; ++i) {
    LoadedServer again;
    UseEverything(again);
    again.Unload();
    ASSERT_FALSE(IsLoaded());
  }
}

TEST_F(ModuleLifeTest, AThreadThatUsedTheModuleMayEndAfterItIsUnloaded) {
  std::promise<void> used;
  std::promise<void> unloaded;
  std::thread user([&] {
    {
      const Apartment ownApartment;
      UseEverything(server);
    }
    used.set_value();
    unloaded.get_future().wait();
  });
  used.get_future().wait();
  server.Unload();
  EXPECT_FALSE(IsLoaded());
  unloaded.set_value();
  user.join();
}

TEST_F(ModuleLifeTest, AThreadThatUsedTheModuleMayEndBeforeItIsUnloaded) {
  std::thread([&] {
    const Apartment ownApartment;
    UseEverything(server);
  }).join();
  server.Unload();
  EXPECT_FALSE(IsLoaded());
}

// It is loaded when a client queries the connection. Afterwards neither unloading the module nor
// any number of calls of FreeLibrary unloads it, and it is loaded once even if the module is loaded
// several times.
TEST_F(ModuleLifeTest, TheInternetLibraryStaysAfterTheFirstQuery) {
  server.Unload();
  EXPECT_EQ(GetModuleHandleW(L"wininet.dll"), nullptr);
  constexpr int kRounds = 3;
  for (int i = 0; i < kRounds; ++i) {
    LoadedServer again;
    {
      const auto main = again.Create<_clsMain>(CLSID_clsMain, IID__clsMain);
      VARIANT_BOOL connected = VARIANT_FALSE;
      EXPECT_EQ(main.Get()->DoesInternetConnectionExist(&connected), S_OK);
    }
    EXPECT_EQ(again.CanUnloadNow(), S_OK);
    again.Unload();
    EXPECT_FALSE(IsLoaded());
    EXPECT_NE(GetModuleHandleW(L"wininet.dll"), nullptr);
  }
  for (int i = 0; i <= kRounds; ++i) FreeLibrary(GetModuleHandleW(L"wininet.dll"));
  EXPECT_NE(GetModuleHandleW(L"wininet.dll"), nullptr);
}

// The registered server: COM asks the DLL and unloads it.
TEST_F(ModuleLifeTest, ComUnloadsTheModuleWhenNothingUsesIt) {
  server.Unload();
  auto timer = CreateTimer();
  ASSERT_TRUE(IsLoaded());
  CoFreeUnusedLibrariesEx(0, 0);
  EXPECT_TRUE(IsLoaded());
  timer.Reset();
  CoFreeUnusedLibrariesEx(0, 0);
  CoFreeUnusedLibrariesEx(0, 0);
  EXPECT_FALSE(IsLoaded());
}

}  // namespace
}  // namespace latchkey::test
