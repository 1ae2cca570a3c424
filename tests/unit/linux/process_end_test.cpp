// Objects that outlive main.
#include <gtest/gtest.h>

#include <cstdlib>

#include "com/cls_main.h"
#include "crypto/cls_crypto_api.h"
#include "diagnostics/cls_timer.h"

namespace latchkey::test {
namespace {

// Uses what the system is asked through once more, with objects of its own.
class OneMoreUse {
 public:
  OneMoreUse() = default;
  OneMoreUse(const OneMoreUse&) = delete;
  OneMoreUse& operator=(const OneMoreUse&) = delete;
  ~OneMoreUse() {
    clsMain main;
    clsCryptoAPI api;
    const bool made = !api.CreateRandom(8).empty();
    static_cast<void>(main.DoesInternetConnectionExist());
    if (!made || clsTimer().GetElapsedTime() < 0) std::abort();
  }
};

// Ends the process with its objects of static duration still in use: what a thread owns is gone by
// the time that they are destroyed.
[[noreturn]] void EndProcessWithStaticObjects() {
  static clsCryptoAPI api;
  static const clsMain main;
  static_cast<void>(api.CreateHash(u"abc", 1));
  static const OneMoreUse use;
  clsTimer().Start();
  std::exit(EXIT_SUCCESS);
}

TEST(ProcessEndDeathTest, ObjectsOfStaticDurationEndCleanly) {
  EXPECT_EXIT(EndProcessWithStaticObjects(), ::testing::ExitedWithCode(EXIT_SUCCESS), "");
}

}  // namespace
}  // namespace latchkey::test
