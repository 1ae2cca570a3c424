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
  latchkey_thread* thread = nullptr;
  latchkey_crypto* crypto = nullptr;
  latchkey_thread_open(&thread);
  latchkey_crypto_open(&crypto);
  FailSystemCall(SYS_getrandom, error);
  std::array<std::uint8_t, 64> bytes{};
  bytes.fill(0xA5);
  const bool noBytes =
      latchkey_random_bytes(crypto, bytes.data(), bytes.size()) == LATCHKEY_PROVIDER_REFUSED &&
      std::count(bytes.begin(), bytes.end(), 0) == 64;
  std::size_t length = bytes.size();
  const bool noRandom =
      latchkey_create_random(crypto, 0, 8, bytes.data(), &length) == LATCHKEY_PROVIDER_REFUSED;
  length = bytes.size();
  const bool noSalt = latchkey_create_salt(crypto, LATCHKEY_LETTERS_ONLY, 8, bytes.data(),
                                           &length) == LATCHKEY_FAULT;
  std::_Exit((noBytes ? 0 : 1) + (noRandom ? 0 : 2) + (noSalt ? 0 : 4));
}

class RandomSourceDeathTest : public ::testing::TestWithParam<int> {};

TEST_P(RandomSourceDeathTest, AFailureOfTheSystemCallIsTheClasss) {
  EXPECT_EXIT(ExitWithTheClasssFailures(GetParam()), ::testing::ExitedWithCode(0), "");
}

TEST_P(RandomSourceDeathTest, AFailureOfTheSystemCallIsTheCInterfaces) {
  EXPECT_EXIT(ExitWithTheCInterfacesFailures(GetParam()), ::testing::ExitedWithCode(0), "");
}

// 0 is not an error: the call returns no bytes.
INSTANTIATE_TEST_SUITE_P(Errors, RandomSourceDeathTest,
                         ::testing::Values(ENOSYS, EPERM, EFAULT, EAGAIN, 0));

}  // namespace
}  // namespace latchkey::test
