#include "crypto/crypto_state.h"

#include <gtest/gtest.h>

#include <thread>

#include "tests/support/module_scope.h"

namespace latchkey::test {
namespace {

TEST(CryptoStateTest, EachThreadHasSeparateState) {
  const ModuleScope scope;
  CryptoState& here = ThisThreadCrypto();
  here.windowCount = 3;
  here.lastDriveTotal = 4;
  here.generatorState = {5, 6};
  std::thread([&here] {
    const CryptoState& there = ThisThreadCrypto();
    EXPECT_NE(&there, &here);
    EXPECT_EQ(there.windowCount, 0);
    EXPECT_EQ(there.lastDriveTotal, 0);
    EXPECT_EQ(there.generatorState, (std::array<std::uint64_t, 2>{0, 0}));
  }).join();
}

}  // namespace
}  // namespace latchkey::test
