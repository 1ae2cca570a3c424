// Clients of the library when the system's random source fails.
#include <gtest/gtest.h>
#include <latchkey.h>
#include <latchkey/cls_crypto_api.h>
#include <latchkey/cls_main.h>
#include <sys/syscall.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdint>
#include <cstdlib>

#include "tests/system/host/system_calls.h"

namespace latchkey::test {
namespace {

// Exits with 0 if each of the operations reports its failure.
void ExitWithTheClasssFailures(int error) {
  clsMain main;
  clsCryptoAPI api;
  FailSystemCall(SYS_getrandom, error);
  const bool noRandom = api.CreateRandom(32).empty() && !main.ErrorExists();
  const bool noSalt = api.CreateSaltValue(8, true).empty() && main.ErrorExists() &&
                      main.ErrorLocationID() == 434 && main.RTErrorNumber() == 5;
  const bool noRawSalt = api.CreateSaltValue(8).empty() && !main.ErrorExists();
  std::_Exit((noRandom ? 0 : 1) + (noSalt ? 0 : 2) + (noRawSalt ? 0 : 4));
}

void ExitWithTheCInterfacesFailures(int error) {
  FailSystemCall(SYS_getrandom, error);
  std::array<std::uint8_t, 64> bytes{};
  bytes.fill(0xA5);
  const bool noBytes =
      latchkey_random_bytes(bytes.data(), bytes.size(), nullptr) == LATCHKEY_PROVIDER_REFUSED &&
      std::count(bytes.begin(), bytes.end(), 0) == 64;
  std::array<char, 64> letters{};
  letters.fill('x');
  const bool noSalt =
      latchkey_salt(letters.data(), letters.size(), nullptr) == LATCHKEY_PROVIDER_REFUSED &&
      std::count(letters.begin(), letters.end(), 0) == 64;
  std::_Exit((noBytes ? 0 : 1) + (noSalt ? 0 : 2));
}

class RandomSourceDeathTest : public ::testing::TestWithParam<int> {};

TEST_P(RandomSourceDeathTest, TheClassReportsAFailureOfTheSystemCall) {
  EXPECT_EXIT(ExitWithTheClasssFailures(GetParam()), ::testing::ExitedWithCode(0), "");
}

TEST_P(RandomSourceDeathTest, TheCInterfaceReportsAFailureOfTheSystemCall) {
  EXPECT_EXIT(ExitWithTheCInterfacesFailures(GetParam()), ::testing::ExitedWithCode(0), "");
}

// 0 is not an error: the call returns no bytes.
INSTANTIATE_TEST_SUITE_P(Errors, RandomSourceDeathTest,
                         ::testing::Values(ENOSYS, EPERM, EFAULT, EAGAIN, 0));

}  // namespace
}  // namespace latchkey::test
