// Registering writes all keys, unregistering removes all of them, and a failed registration leaves
// none, for the machine and for one user. These tests use the DLL of their folder and leave it
// unregistered.
#include <map>

#include "tests/com/server/loaded_server.h"

namespace latchkey::test {
namespace {

const std::wstring kLibrary = L"TypeLib\\{0562AB02-E900-4BE8-9D22-4CBE668FCAB8}";
const std::wstring kMainClass = L"CLSID\\{3D47BC99-A2AC-4DA2-B56E-B751FC9219E1}";
const std::vector<std::wstring> kClassKeys = {kMainClass,
                                              L"CLSID\\{B3824218-CCBD-4C2C-AB89-CC22A04DA9C7}",
                                              L"CLSID\\{A144FBA6-7576-4E9F-9DCD-0D7B8653AB38}"};
const std::vector<std::wstring> kNameKeys = {L"Latchkey.clsMain",      L"Latchkey.clsMain.1",
                                             L"Latchkey.clsCryptoAPI", L"Latchkey.clsCryptoAPI.1",
                                             L"Latchkey.clsTimer",     L"Latchkey.clsTimer.1"};
const std::vector<std::wstring> kInterfaceKeys = {
    L"Interface\\{F55CD350-FE3E-42B8-BECB-C3D4E7D8228C}",
    L"Interface\\{EF515DCA-639E-49A0-B7C8-EB8DB30F466D}",
    L"Interface\\{616F584B-0231-4E0C-A7FD-60745D12DBEC}"};
constexpr REGSAM kOtherBitness = sizeof(void*) == 8 ? KEY_WOW64_32KEY : KEY_WOW64_64KEY;

std::vector<std::wstring> AllKeys() {
  std::vector<std::wstring> keys = {kLibrary};
  for (const auto& more : {kClassKeys, kNameKeys, kInterfaceKeys}) {
    keys.insert(keys.end(), more.begin(), more.end());
  }
  return keys;
}

// The existing keys of the machine or of the user.
std::vector<std::wstring> KeysThatExist(HKEY root = HKEY_LOCAL_MACHINE) {
  std::vector<std::wstring> existing;
  for (const std::wstring& path : AllKeys()) {
    const std::wstring below = L"Software\\Classes\\" + path;
    HKEY key = nullptr;
    if (RegOpenKeyExW(root, below.c_str(), 0, KEY_READ, &key) != ERROR_SUCCESS) continue;
    RegCloseKey(key);
    existing.push_back(path);
  }
  return existing;
}

std::wstring Read(const std::wstring& path, const wchar_t* name = nullptr,
                  HKEY root = HKEY_LOCAL_MACHINE) {
  wchar_t text[512] = L"";
  DWORD size = sizeof(text);
  const LSTATUS status = RegGetValueW(root, (L"Software\\Classes\\" + path).c_str(), name,
                                      RRF_RT_REG_SZ, nullptr, text, &size);
  return status == ERROR_SUCCESS ? text : L"(none)";
}

class RegistrationTest : public LoadedServerTest {
 protected:
  RegistrationTest() { UnregisterAll(); }
  ~RegistrationTest() override { UnregisterAll(); }

  void UnregisterAll() const {
    EXPECT_EQ(server.Install(false, L"user"), S_OK);
    EXPECT_EQ(server.Unregister(), S_OK);
  }
};

using Nothing = std::vector<std::wstring>;

TEST_F(RegistrationTest, RegisteringMakesAllKeys) {
  ASSERT_EQ(server.Register(), S_OK);
  EXPECT_EQ(KeysThatExist(), AllKeys());
}

TEST_F(RegistrationTest, AClassKeyHasServerNamesTypeLibraryAndVersion) {
  ASSERT_EQ(server.Register(), S_OK);
  EXPECT_EQ(Read(kMainClass + L"\\InprocServer32"), server.Path());
  EXPECT_EQ(Read(kMainClass + L"\\InprocServer32", L"ThreadingModel"), L"Apartment");
  EXPECT_EQ(Read(kMainClass + L"\\ProgID"), L"Latchkey.clsMain.1");
  EXPECT_EQ(Read(kMainClass + L"\\VersionIndependentProgID"), L"Latchkey.clsMain");
  EXPECT_EQ(Read(kMainClass + L"\\TypeLib"), L"{0562AB02-E900-4BE8-9D22-4CBE668FCAB8}");
  EXPECT_EQ(Read(kMainClass + L"\\Version"), L"1.0");
  EXPECT_EQ(Read(kMainClass + L"\\Programmable"), L"");
}

TEST_F(RegistrationTest, EveryNameRefersToItsClass) {
  ASSERT_EQ(server.Register(), S_OK);
  const std::map<std::wstring, CLSID> classes = {{L"Latchkey.clsMain", CLSID_clsMain},
                                                 {L"Latchkey.clsCryptoAPI", CLSID_clsCryptoAPI},
                                                 {L"Latchkey.clsTimer", CLSID_clsTimer}};
  for (const auto& [name, classId] : classes) {
    EXPECT_EQ(Read(name + L"\\CurVer"), name + L".1");
    for (const std::wstring& spelling : {name, name + L".1"}) {
      CLSID found = {};
      EXPECT_EQ(CLSIDFromProgID(spelling.c_str(), &found), S_OK);
      EXPECT_TRUE(IsEqualCLSID(found, classId)) << name.size();
    }
  }
}

TEST_F(RegistrationTest, TheTypeLibraryIsFoundByItsIdentifier) {
  ASSERT_EQ(server.Register(), S_OK);
  UniqueInterface<ITypeLib> library;
  EXPECT_EQ(LoadRegTypeLib(LIBID_Latchkey, 1, 0, LOCALE_NEUTRAL, library.Put()), S_OK);
}

// No object exists whose destruction would release it.
TEST_F(RegistrationTest, RegisteringReleasesTheTypeLibrary) {
  const UniqueInterface<ITypeLib> library = server.TypeLibrary();
  EXPECT_EQ(ReferencesTo(library.Get()), 1U);
  EXPECT_EQ(server.Register(), S_OK);
  EXPECT_EQ(ReferencesTo(library.Get()), 1U);
}

TEST_F(RegistrationTest, UnregisteringLeavesNoKey) {
  ASSERT_EQ(server.Register(), S_OK);
  EXPECT_EQ(server.Unregister(), S_OK);
  EXPECT_EQ(KeysThatExist(), Nothing());
}

TEST_F(RegistrationTest, RegisteringAndUnregisteringTwiceSucceeds) {
  EXPECT_EQ(server.Register(), S_OK);
  EXPECT_EQ(server.Register(), S_OK);
  EXPECT_EQ(KeysThatExist(), AllKeys());
  EXPECT_EQ(server.Unregister(), S_OK);
  EXPECT_EQ(server.Unregister(), S_OK);
  EXPECT_EQ(KeysThatExist(), Nothing());
}

void CreateKey(HKEY root, const wchar_t* path, DWORD options) {
  HKEY key = nullptr;
  ASSERT_EQ(
      RegCreateKeyExW(root, path, 0, nullptr, options, KEY_ALL_ACCESS, nullptr, &key, nullptr),
      ERROR_SUCCESS);
  RegCloseKey(key);
}

// A volatile key cannot have permanent keys below it, so the last write fails.
void ObstructTheLastKey(HKEY root) {
  CreateKey(root, L"Software\\Classes", REG_OPTION_NON_VOLATILE);
  CreateKey(root, L"Software\\Classes\\Latchkey.clsTimer.1", REG_OPTION_VOLATILE);
}

TEST_F(RegistrationTest, ARegistrationThatFailsHalfWayIsUndoneAndReported) {
  ObstructTheLastKey(HKEY_LOCAL_MACHINE);
  EXPECT_EQ(server.Register(), HRESULT_FROM_WIN32(ERROR_CHILD_MUST_BE_VOLATILE));
  EXPECT_EQ(KeysThatExist(), Nothing());
  ObstructTheLastKey(HKEY_CURRENT_USER);
  EXPECT_EQ(server.Install(true, L"user"), HRESULT_FROM_WIN32(ERROR_CHILD_MUST_BE_VOLATILE));
  EXPECT_EQ(KeysThatExist(HKEY_CURRENT_USER), Nothing());
}

std::vector<std::wstring> ClassAndNameKeys() {
  std::vector<std::wstring> keys = kClassKeys;
  keys.insert(keys.end(), kNameKeys.begin(), kNameKeys.end());
  return keys;
}

// Wine enters a user's type library for the machine, so this checks only the keys that the DLL
// writes itself.
TEST_F(RegistrationTest, ForTheUserTheClassesAndNamesAreOnlyTheUsers) {
  ASSERT_EQ(server.Install(true, L"user"), S_OK);
  std::vector<std::wstring> ofUser = KeysThatExist(HKEY_CURRENT_USER);
  for (const std::wstring& path : ClassAndNameKeys()) {
    EXPECT_EQ(std::erase(ofUser, path), 1U);
    EXPECT_EQ(Read(path), L"(none)");
  }
  const std::wstring serverKey = kMainClass + L"\\InprocServer32";
  EXPECT_EQ(Read(serverKey, nullptr, HKEY_CURRENT_USER), server.Path());
  EXPECT_EQ(Read(serverKey, L"ThreadingModel", HKEY_CURRENT_USER), L"Apartment");
  UniqueInterface<ITypeLib> library;
  EXPECT_EQ(LoadRegTypeLib(LIBID_Latchkey, 1, 0, LOCALE_NEUTRAL, library.Put()), S_OK);
}

TEST_F(RegistrationTest, UnregisteringForTheUserLeavesNoKey) {
  for (const wchar_t* const spelling : {L"user", L"USER"}) {
    ASSERT_EQ(server.Install(true, spelling), S_OK);
    EXPECT_EQ(server.Install(false, spelling), S_OK);
    EXPECT_EQ(server.Install(false, spelling), S_OK);
    EXPECT_EQ(KeysThatExist(HKEY_CURRENT_USER), Nothing());
    EXPECT_EQ(KeysThatExist(), Nothing());
  }
}

TEST_F(RegistrationTest, UnregisteringForTheUserLeavesTheMachinesClasses) {
  ASSERT_EQ(server.Register(), S_OK);
  EXPECT_EQ(server.Install(false, L"user"), S_OK);
  for (const std::wstring& path : ClassAndNameKeys()) EXPECT_NE(Read(path), L"(none)");
}

TEST_F(RegistrationTest, InstallingWithoutOptionsIsForTheMachine) {
  for (const wchar_t* const options : {static_cast<const wchar_t*>(nullptr), L""}) {
    ASSERT_EQ(server.Install(true, options), S_OK);
    EXPECT_EQ(KeysThatExist(), AllKeys());
    EXPECT_EQ(KeysThatExist(HKEY_CURRENT_USER), Nothing());
    EXPECT_EQ(server.Install(false, options), S_OK);
    EXPECT_EQ(KeysThatExist(), Nothing());
  }
}

TEST_F(RegistrationTest, InstallingWithOtherOptionsIsRefused) {
  for (const wchar_t* const options : {L"users", L"machine", L" "}) {
    EXPECT_EQ(server.Install(true, options), E_INVALIDARG);
    EXPECT_EQ(KeysThatExist(), Nothing());
    EXPECT_EQ(KeysThatExist(HKEY_CURRENT_USER), Nothing());
  }
}

// The registry holds the names once for the programs of both bitnesses.
TEST_F(RegistrationTest, TheNamesStayWhileTheOtherBitnessIsRegistered) {
  BOOL emulated = FALSE;
  IsWow64Process(GetCurrentProcess(), &emulated);
  ASSERT_EQ(server.Register(), S_OK);
  HKEY key = nullptr;
  ASSERT_EQ(RegCreateKeyExW(HKEY_CLASSES_ROOT, kMainClass.c_str(), 0, nullptr, 0,
                            KEY_ALL_ACCESS | kOtherBitness, nullptr, &key, nullptr),
            ERROR_SUCCESS);
  RegCloseKey(key);
  EXPECT_EQ(server.Unregister(), S_OK);
  const bool twoViews = sizeof(void*) == 8 || emulated;
  const Nothing names = {L"Latchkey.clsMain", L"Latchkey.clsMain.1"};
  EXPECT_EQ(KeysThatExist(), twoViews ? names : Nothing());
  RegDeleteKeyExW(HKEY_CLASSES_ROOT, kMainClass.c_str(), kOtherBitness, 0);
}

}  // namespace
}  // namespace latchkey::test
