// Cryptographic providers whose entries are removed from the registry: every operation that needs
// one reports it, and works as soon as they are restored. No other program may use the prefix
// meanwhile.
#include <map>

#include "tests/com/com_client.h"

namespace latchkey::test {
namespace {

constexpr const wchar_t* kEntries = L"Software\\Microsoft\\Cryptography\\Defaults\\Provider";
constexpr const wchar_t* kBase = L"Microsoft Base Cryptographic Provider v1.0";
constexpr const wchar_t* kEnhanced = L"Microsoft Enhanced Cryptographic Provider v1.0";
constexpr const wchar_t* kAside = L" (set aside by a test)";

std::wstring PathOf(const std::wstring& provider) { return kEntries + (L"\\" + provider); }

LSTATUS Rename(const std::wstring& from, const std::wstring& to) {
  HKEY source = nullptr;
  LSTATUS status = RegOpenKeyExW(HKEY_LOCAL_MACHINE, PathOf(from).c_str(), 0, KEY_READ, &source);
  if (status != ERROR_SUCCESS) return status;
  HKEY target = nullptr;
  status = RegCreateKeyExW(HKEY_LOCAL_MACHINE, PathOf(to).c_str(), 0, nullptr, 0, KEY_ALL_ACCESS,
                           nullptr, &target, nullptr);
  if (status == ERROR_SUCCESS) status = RegCopyTreeW(source, nullptr, target);
  RegCloseKey(target);
  RegCloseKey(source);
  return status == ERROR_SUCCESS ? RegDeleteTreeW(HKEY_LOCAL_MACHINE, PathOf(from).c_str())
                                 : status;
}

// All registered providers.
std::vector<std::wstring> Providers() {
  std::vector<std::wstring> names;
  HKEY key = nullptr;
  EXPECT_EQ(RegOpenKeyExW(HKEY_LOCAL_MACHINE, kEntries, 0, KEY_READ, &key), ERROR_SUCCESS);
  wchar_t name[256];
  for (DWORD i = 0, length = 256;
       RegEnumKeyExW(key, i, name, &length, nullptr, nullptr, nullptr, nullptr) == ERROR_SUCCESS;
       ++i, length = 256) {
    names.emplace_back(name);
  }
  RegCloseKey(key);
  return names;
}

// Restores the removed entries, of this run or an interrupted one.
void RestoreEntries() {
  const std::wstring suffix = kAside;
  for (const std::wstring& name : Providers()) {
    if (!name.ends_with(suffix)) continue;
    EXPECT_EQ(Rename(name, name.substr(0, name.size() - suffix.size())), ERROR_SUCCESS);
  }
}

// The record of an operation that reports a failure.
ErrorRecord Failure(short location, LONG number, const wchar_t* description) {
  return {location, 2, 0, L"", number, description, VARIANT_TRUE};
}

class MissingProviderTest : public ClientTest {
 protected:
  MissingProviderTest() { RestoreEntries(); }
  ~MissingProviderTest() override { RestoreEntries(); }

  static void SetAside(const std::wstring& provider) {
    ASSERT_EQ(Rename(provider, provider + kAside), ERROR_SUCCESS);
  }

  std::wstring Random() {
    BSTR text = nullptr;
    EXPECT_EQ(Api()->CreateRandom(8, VARIANT_TRUE, VARIANT_FALSE, VARIANT_FALSE, &text), S_OK);
    return Take(text);
  }

  void ExpectEveryOperationReportsIt() {
    const wchar_t* const noProvider = L"Error acquiring provider";
    EXPECT_EQ(Hash(L"abc", 1), L"");
    EXPECT_EQ(ReadRecord(Main()), Failure(709, 117, L"Error creating hash"));
    EXPECT_EQ(Random(), L"");
    EXPECT_EQ(ReadRecord(Main()), Failure(710, 114, noProvider));
    EXPECT_EQ(Decrypt(1, 1), VARIANT_FALSE);
    EXPECT_EQ(ReadRecord(Main()), Failure(713, 114, noProvider));
    SAFEARRAY* output = nullptr;
    EXPECT_EQ(Api()->get_OutputData(&output), S_OK);
    EXPECT_EQ(Take(output), Bytes{0});
    EXPECT_EQ(Encrypt(1, 1), VARIANT_FALSE);
    EXPECT_EQ(ReadRecord(Main()), Failure(720, 114, noProvider));
    EXPECT_EQ(Api()->get_OutputData(&output), S_OK);
    EXPECT_EQ(output, nullptr);
  }

  void ExpectEverythingWorks() {
    EXPECT_EQ(Hash(L"abc", 1), L"900150983CD24FB0D6963F7D28E17F72");  // RFC 1321
    EXPECT_EQ(Encrypt(1, 1), VARIANT_TRUE);
    EXPECT_EQ(Decrypt(1, 1), VARIANT_TRUE);
    EXPECT_NE(Random(), L"");
    EXPECT_EQ(ReadRecord(Main()).exists, VARIANT_FALSE);
  }
};

TEST_F(MissingProviderTest, WithoutTheEnhancedProviderNoOtherIsUsed) {
  UseEnhancedProvider(true);
  SetAside(kEnhanced);
  ExpectEveryOperationReportsIt();
  RestoreEntries();
  ExpectEverythingWorks();
}

TEST_F(MissingProviderTest, WithoutAnyProviderTheBaseOneIsReportedToo) {
  for (const std::wstring& provider : Providers()) SetAside(provider);
  ExpectEveryOperationReportsIt();
  RestoreEntries();
  ExpectEverythingWorks();
}

// The default provider then makes the default-named key set, which fails if it exists.
TEST_F(MissingProviderTest, WithoutTheBaseProviderTheDefaultOneMakesItsKeySet) {
  const auto deleteKeySet = [] {
    HCRYPTPROV none = 0;
    return CryptAcquireContextA(&none, "", "", PROV_RSA_FULL, CRYPT_DELETEKEYSET);
  };
  deleteKeySet();
  SetAside(kBase);
  ExpectEverythingWorks();
  {
    const auto other = CreateCryptoApi();
    VARIANT_BOOL done = VARIANT_TRUE;
    EXPECT_EQ(other.Get()->Encrypt(1, 1, &done), S_OK);
    EXPECT_EQ(done, VARIANT_FALSE);
    EXPECT_EQ(ReadRecord(Main()), Failure(720, 114, L"Error acquiring provider"));
  }
  EXPECT_TRUE(deleteKeySet());
}

TEST_F(MissingProviderTest, AProviderThatIsOpenStaysInUse) {
  ExpectEverythingWorks();
  for (const std::wstring& provider : Providers()) SetAside(provider);
  ExpectEverythingWorks();
}

}  // namespace
}  // namespace latchkey::test
