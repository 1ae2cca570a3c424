// Objects that outlive main.
#include <gtest/gtest.h>

#include <cstdlib>

#include "base/never_destroyed.h"
#include "latchkey/cls_crypto_api.h"
#include "latchkey/cls_main.h"

namespace latchkey::test {
namespace {

// Ends the process while objects of static duration are still in use. The data of the main thread
// is destroyed before them.
[[noreturn]] void EndProcessWithStaticObjects() {
  static clsCryptoAPI api;
  static const clsMain main;
  static_cast<void>(api.CreateHash(u"abc", 1));
  std::exit(EXIT_SUCCESS);
}

TEST(ProcessEndDeathTest, ObjectsOfStaticDurationEndCleanly) {
  EXPECT_EXIT(EndProcessWithStaticObjects(), ::testing::ExitedWithCode(EXIT_SUCCESS), "");
}

struct FailsWhenDestroyed {
  FailsWhenDestroyed() = default;
  FailsWhenDestroyed(const FailsWhenDestroyed&) = delete;
  FailsWhenDestroyed& operator=(const FailsWhenDestroyed&) = delete;
  ~FailsWhenDestroyed() { std::_Exit(EXIT_FAILURE); }
};

[[noreturn]] void EndProcessWithAnObjectNeverDestroyed() {
  static NeverDestroyed<FailsWhenDestroyed> object;
  static_cast<void>(object.Get());
  std::exit(EXIT_SUCCESS);
}

TEST(ProcessEndDeathTest, NeverDestroyedObjectsAreNotDestroyedAtTheEnd) {
  EXPECT_EXIT(EndProcessWithAnObjectNeverDestroyed(), ::testing::ExitedWithCode(EXIT_SUCCESS), "");
}

}  // namespace
}  // namespace latchkey::test
