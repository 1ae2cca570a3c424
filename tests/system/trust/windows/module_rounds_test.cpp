// The DLL loaded, used and unloaded repeatedly in one process.
#include "tests/com/server/loaded_server.h"
#include "tests/system/trust/resource_usage.h"
#include "tests/system/trust/windows/fatal_exceptions.h"

namespace latchkey::test {
namespace {

// A process has 1,088 thread-local slots, so losing one in each round fails.
constexpr int kRounds = 1200;
// The memory that mingw-w64's thread library keeps for a thread and that cannot be freed, the same
// in every round. A leak of 4 more bytes a round is too much.
constexpr std::uint64_t kKeptByRunTime = sizeof(void*) == 8 ? 528 : 244;
constexpr std::uint64_t kHeapSlack = 4U << 10;
constexpr int kFirstRounds = 50;  // fill the system's caches

void Use(const LoadedServer& server) {
  const auto main = server.Create<_clsMain>(CLSID_clsMain, IID__clsMain);
  const auto api = server.Create<_clsCryptoAPI>(CLSID_clsCryptoAPI, IID__clsCryptoAPI);
  BSTR digest = nullptr;
  EXPECT_EQ(api.Get()->CreateHash(Bstr(L"abc").Get(), 1, VARIANT_TRUE, VARIANT_FALSE, VARIANT_FALSE,
                                  &digest),
            S_OK);
  EXPECT_EQ(Take(digest), L"900150983CD24FB0D6963F7D28E17F72");  // RFC 1321
  EXPECT_EQ(server.CanUnloadNow(), S_FALSE);
}

void PlayRound() {
  LoadedServer server;
  EXPECT_EQ(server.CanUnloadNow(), S_OK);
  Use(server);
  EXPECT_EQ(server.CanUnloadNow(), S_OK);
  server.Unload();
  EXPECT_EQ(GetModuleHandleW(L"latchkey.dll"), nullptr);
}

TEST(ModuleRoundsTest, MoreRoundsThanAProcessHasSlotsLeakNothing) {
  const Apartment apartment;
  // The provider would otherwise be loaded and unloaded as well.
  const HMODULE provider = LoadLibraryW(L"rsaenh.dll");
  for (int i = 0; i < kFirstRounds; ++i) PlayRound();
  const ResourceUsage before = CurrentUsage();
  for (int i = kFirstRounds; i < kRounds && !HasFailure(); ++i) PlayRound();
  const ResourceUsage after = CurrentUsage();
  EXPECT_EQ(after.systemHandles, before.systemHandles);
  std::printf("%.1f bytes of heap more in each round\n",
              static_cast<double>(after.heapBytes - before.heapBytes) / (kRounds - kFirstRounds));
  EXPECT_LE(after.heapBytes,
            before.heapBytes + (kRounds - kFirstRounds) * kKeptByRunTime + kHeapSlack);
  EXPECT_LE(after.residentBytes, before.residentBytes + (1U << 20));
  FreeLibrary(provider);
}

}  // namespace
}  // namespace latchkey::test
