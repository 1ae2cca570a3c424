// Registering and unregistering repeatedly does not change the registry: every key and every value
// of the machine's and the user's software, which includes all classes.
#include <map>

#include "tests/com/server/loaded_server.h"

namespace latchkey::test {
namespace {

constexpr int kRounds = 10;

// The values of each key by the key's path: name, type and content.
using Values = std::map<std::wstring, std::pair<DWORD, Bytes>>;
using Registry = std::map<std::wstring, Values>;

constexpr DWORD kLongestName = 16384;  // of a value, in characters

void ReadValues(HKEY key, Values& values) {
  std::wstring name(kLongestName, L'\0');
  for (DWORD i = 0;; ++i) {
    DWORD length = kLongestName;
    DWORD type = 0;
    DWORD size = 0;
    if (RegEnumValueW(key, i, name.data(), &length, nullptr, &type, nullptr, &size) !=
        ERROR_SUCCESS) {
      return;
    }
    const std::wstring found = name.substr(0, length);
    Bytes content(size);
    RegQueryValueExW(key, found.c_str(), nullptr, nullptr, content.data(), &size);
    values[found] = {type, content};
  }
}

void ReadKeys(HKEY key, const std::wstring& path, Registry& registry) {
  ReadValues(key, registry[path]);
  wchar_t name[256];
  for (DWORD i = 0;; ++i) {
    DWORD length = 256;
    if (RegEnumKeyExW(key, i, name, &length, nullptr, nullptr, nullptr, nullptr) != ERROR_SUCCESS) {
      return;
    }
    HKEY below = nullptr;
    if (RegOpenKeyExW(key, name, 0, KEY_READ, &below) != ERROR_SUCCESS) continue;
    ReadKeys(below, path + L"\\" + name, registry);
    RegCloseKey(below);
  }
}

Registry ReadSoftware() {
  Registry registry;
  for (HKEY root : {HKEY_LOCAL_MACHINE, HKEY_CURRENT_USER}) {
    HKEY software = nullptr;
    EXPECT_EQ(RegOpenKeyExW(root, L"Software", 0, KEY_READ, &software), ERROR_SUCCESS);
    ReadKeys(software, root == HKEY_LOCAL_MACHINE ? L"machine" : L"user", registry);
    RegCloseKey(software);
  }
  return registry;
}

// The keys that are in one only or differ, converted for printing.
std::vector<std::string> Differences(const Registry& before, const Registry& after) {
  std::vector<std::string> paths;
  const auto add = [&](const std::wstring& path) { paths.emplace_back(path.begin(), path.end()); };
  for (const auto& [path, values] : before) {
    const auto found = after.find(path);
    if (found == after.end() || found->second != values) add(path);
  }
  for (const auto& [path, values] : after) {
    if (before.find(path) == before.end()) add(path);
  }
  return paths;
}

TEST(RegistryRoundsTest, TenRoundsChangeNoKeyOrValue) {
  const Apartment apartment;
  const LoadedServer server;
  EXPECT_EQ(server.Unregister(), S_OK);
  const Registry before = ReadSoftware();
  for (int i = 0; i < kRounds; ++i) {
    EXPECT_EQ(server.Register(), S_OK);
    EXPECT_EQ(server.Unregister(), S_OK);
  }
  EXPECT_EQ(Differences(before, ReadSoftware()), std::vector<std::string>());
  EXPECT_GT(before.size(), 1000U);

  // Checks that the comparison detects a registration.
  EXPECT_EQ(server.Register(), S_OK);
  EXPECT_NE(Differences(before, ReadSoftware()), std::vector<std::string>());
  EXPECT_EQ(server.Unregister(), S_OK);
}

}  // namespace
}  // namespace latchkey::test
