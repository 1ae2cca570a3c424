#include "provider/provider_handles.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "latchkey/fault.h"
#include "tests/support/scripted_provider.h"

namespace latchkey::test {
namespace {

// Handles are closed during clean-up, where nothing may stop the remaining steps.
TEST(ProviderHandlesTest, AFaultWhileClosingDoesNotStopTheCleanUp) {
  CallJournal journal;
  ScriptedProvider provider(journal);
  for (const char* const call : {"CryptDestroyHash", "CryptReleaseContext"}) {
    provider.ThrowAt(call, 1, Fault(FaultNumber::Overflow));
  }
  ContextTrait::Type context{&provider};
  ASSERT_TRUE(provider.CryptAcquireContextA(&context.value, "", provider::kBaseProviderName,
                                            provider::kProviderTypeRsaFull,
                                            provider::kVerifyContext));
  {
    const UniqueContext owner(context);
    UniqueHash hash = MakeHash(owner, provider::kAlgorithmMd5);
    EXPECT_TRUE(hash);
    EXPECT_NO_THROW(hash.Reset());
    EXPECT_FALSE(hash);
  }
  EXPECT_EQ(provider.OpenHandles(), std::vector<HandleName>{});
}

}  // namespace
}  // namespace latchkey::test
