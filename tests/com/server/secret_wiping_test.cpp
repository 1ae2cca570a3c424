// Memory that the server frees contains no secrets.
#include "tests/com/automation_memory.h"
#include "tests/com/late_bound/late_client.h"

namespace latchkey::test {
namespace {

constexpr std::string_view kSecret = "a very secret password";

// Counts these bytes in all readable and writable memory of the process.
int CopiesInMemory(std::string_view bytes) {
  int copies = 0;
  MEMORY_BASIC_INFORMATION region = {};
  const char* address = nullptr;
  while (VirtualQuery(address, &region, sizeof(region)) != 0) {
    const auto* const start = static_cast<const char*>(region.BaseAddress);
    if (region.State == MEM_COMMIT && region.Protect == PAGE_READWRITE) {
      const std::string_view content(start, region.RegionSize);
      for (auto at = content.find(bytes); at != std::string_view::npos;
           at = content.find(bytes, at + 1)) {
        ++copies;
      }
    }
    address = start + region.RegionSize;
  }
  return copies;
}

class SecretWipingTest : public LateClientTest {
 protected:
  // Makes a call that succeeds, and in which the server frees memory, none of it with the secret.
  template <class Call>
  static void ExpectWiped(std::string_view secret, Call&& call) {
    const SecretWatch watch(secret);
    ASSERT_EQ(call(), S_OK);
    EXPECT_GE(watch.Freed(), 1);
    EXPECT_EQ(watch.FreedWithSecret(), 0);
  }
};

TEST_F(SecretWipingTest, TheCallersArrayIsZeroBeforeItIsFreed) {
  SAFEARRAY* array = MakeByteArray(TextArray(kSecret));
  ExpectWiped(kSecret, [&] { return Api()->put_Password(&array); });
  EXPECT_EQ(array, nullptr);
}

TEST_F(SecretWipingTest, TheCopyOfAnArrayByValueIsZeroBeforeItIsFreed) {
  const UniqueSafeArray array(MakeByteArray(TextArray(kSecret)));
  ExpectWiped(kSecret, [&] { return api.Put(L"Password", Value(array.Get())).result; });
}

TEST_F(SecretWipingTest, TheCopyOfPlaintextByValueIsZeroBeforeItIsFreed) {
  const UniqueSafeArray array(MakeByteArray(TextArray(kSecret)));
  ExpectWiped(kSecret, [&] { return api.Put(L"InputData", Value(array.Get())).result; });
}

TEST_F(SecretWipingTest, ATextByReferenceLeavesNoCopy) {
  const UniqueBstr text = Bstr(L"a secret text");
  BSTR raw = text.Get();
  VARIANT reference = OfType(VT_BYREF | VT_BSTR);
  V_BSTRREF(&reference) = &raw;
  ExpectWiped({reinterpret_cast<const char*>(raw), SysStringByteLen(raw)}, [&] {
    const Outcome outcome = api.Call(L"ConvertStringToHex", {reference});
    EXPECT_EQ(outcome.text, L"61207365637265742074657874");
    return outcome.result;
  });
}

TEST_F(SecretWipingTest, AResultThatTheCallerDoesNotTakeIsZeroBeforeItIsFreed) {
  const UniqueBstr hex = Bstr(L"61207365637265742074657874");
  const std::wstring plain = L"a secret text";
  VARIANT argument = Value(hex.Get());
  DISPPARAMS arguments = {&argument, nullptr, 1, 0};
  ExpectWiped({reinterpret_cast<const char*>(plain.data()), plain.size() * 2}, [&] {
    return Api()->Invoke(api.IdOf(L"ConvertStringFromHex"), IID_NULL, LOCALE_USER_DEFAULT,
                         DISPATCH_METHOD, &arguments, nullptr, nullptr, nullptr);
  });
}

// The heap may use the start of a free block; the rest of a text would be its end.
TEST_F(SecretWipingTest, ASaltStaysOnlyInItsResult) {
  ScopedVariant salt;
  ASSERT_EQ(Api()->CreateSaltValue(60, VARIANT_TRUE, &salt.Get()), S_OK);
  const auto* const text = reinterpret_cast<const char*>(V_BSTR(&salt.Get()));
  EXPECT_EQ(CopiesInMemory(std::string_view(text, 120).substr(80)), 1);
}

TEST_F(SecretWipingTest, TheWatchSeesASecretThatIsNotWiped) {
  SAFEARRAY* const array = MakeByteArray(TextArray(kSecret));
  const SecretWatch watch(kSecret);
  SafeArrayDestroy(array);
  EXPECT_EQ(watch.FreedWithSecret(), 1);
}

}  // namespace
}  // namespace latchkey::test
