// Errors of a late-bound client without a clsMain on its thread.
#include <thread>

#include "tests/com/late_bound/late_client.h"

namespace latchkey::test {
namespace {

constexpr const wchar_t* kNoMain =
    L"Object variable or With block variable not set: no clsMain exists on this thread";

Outcome Hash(const UniqueInterface<_clsCryptoAPI>& api) {
  return LateClient(api.Get()).Call(L"CreateHash", {Value(Bstr(L"abc").Get()), Value(1)});
}

TEST(MissingMainTest, AnOperationOnAThreadWithoutMainReportsIt) {
  const Apartment apartment;
  const auto api = CreateCryptoApi();
  ExpectException(Hash(api), 91, kNoMain);
  const auto main = CreateMain();
  EXPECT_EQ(Hash(api).result, S_OK);
}

TEST(MissingMainTest, ReleasingTheMainOfAnotherThreadOfTheMultithreadedApartmentIsReported) {
  const Apartment apartment(COINIT_MULTITHREADED);
  const auto api = CreateCryptoApi();
  const auto main = CreateMain();
  EXPECT_EQ(Hash(api).result, S_OK);
  std::thread([] {
    const Apartment same(COINIT_MULTITHREADED);
    CreateMain().Reset();
  }).join();
  ExpectException(Hash(api), 91, kNoMain);
  const Outcome seen = LateClient(main.Get()).Get(L"ErrorExists");
  EXPECT_EQ(seen.scode, FaultCode(91));
  EXPECT_EQ(seen.description, kNoMain);
}

}  // namespace
}  // namespace latchkey::test
