// Access lists of the command's files on Windows.
#include "cli/platform/windows/owner_only.h"

#include <gtest/gtest.h>
#include <sddl.h>

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "cli/platform/output_file.h"
#include "cli/platform/windows/handles.h"

namespace latchkey::test {
namespace {

using cli::OutputFile;
using cli::Readers;

// The access list in its text form, "D:P(A;;FA;;;S-1-...)".
std::wstring TextOf(PSECURITY_DESCRIPTOR descriptor) {
  wchar_t* text = nullptr;
  if (!ConvertSecurityDescriptorToStringSecurityDescriptorW(
          descriptor, SDDL_REVISION_1, DACL_SECURITY_INFORMATION, &text, nullptr)) {
    return L"";
  }
  std::wstring copy = text;
  LocalFree(text);
  return copy;
}

std::wstring UsersIdentifier() {
  HANDLE opened = nullptr;
  EXPECT_TRUE(OpenProcessToken(GetCurrentProcess(), TOKEN_QUERY, &opened));
  const cli::UniqueFile token = cli::Owned(opened);
  std::vector<std::uint64_t> storage(64);
  DWORD size = 0;
  EXPECT_TRUE(GetTokenInformation(opened, TokenUser, storage.data(), 512, &size));
  wchar_t* text = nullptr;
  EXPECT_TRUE(
      ConvertSidToStringSidW(reinterpret_cast<TOKEN_USER*>(storage.data())->User.Sid, &text));
  std::wstring copy = text;
  LocalFree(text);
  return copy;
}

// A new empty folder, removed with the files in it.
class Folder {
 public:
  Folder() { std::filesystem::create_directory(path_); }
  Folder(const Folder&) = delete;
  Folder& operator=(const Folder&) = delete;
  ~Folder() { std::filesystem::remove_all(path_); }

  [[nodiscard]] std::vector<std::wstring> Files() const {
    std::vector<std::wstring> files;
    for (const auto& entry : std::filesystem::directory_iterator(path_)) {
      if (entry.is_regular_file()) files.push_back(entry.path().wstring());
    }
    return files;
  }

  [[nodiscard]] std::string Place(const char* file) const { return (path_ / file).string(); }

 private:
  const std::filesystem::path path_ = std::filesystem::temp_directory_path() /
                                      ("latchkey-owner-" + std::to_string(GetCurrentProcessId()));
};

std::wstring ListOf(const std::wstring& file) {
  std::vector<std::uint64_t> descriptor(512);
  DWORD size = 0;
  if (!GetFileSecurityW(file.c_str(), DACL_SECURITY_INFORMATION, descriptor.data(), 4096, &size)) {
    return L"";
  }
  return TextOf(descriptor.data());
}

bool NamesEveryone(const std::wstring& list) { return list.find(L";WD)") != std::wstring::npos; }

TEST(OwnerOnlyTest, TheListGrantsTheUserEverythingAndInheritsNothing) {
  cli::OwnerOnly ownerOnly;
  ASSERT_NE(ownerOnly.Get(), nullptr);
  // The text form may have a short name for the user, so the list is read back from the same form.
  PSECURITY_DESCRIPTOR expected = nullptr;
  const std::wstring text = L"D:P(A;;FA;;;" + UsersIdentifier() + L")";
  ASSERT_TRUE(ConvertStringSecurityDescriptorToSecurityDescriptorW(text.c_str(), SDDL_REVISION_1,
                                                                   &expected, nullptr));
  EXPECT_EQ(TextOf(ownerOnly.Get()->lpSecurityDescriptor), TextOf(expected));
  LocalFree(expected);
}

TEST(OwnerOnlyTest, ATemporaryFileOfAPlaintextIsClosedToEveryone) {
  const Folder folder;
  OutputFile output(folder.Place("out"), false, Readers::Owner);
  const auto files = folder.Files();
  ASSERT_EQ(files.size(), 1U);
  const std::wstring list = ListOf(files.front());
  EXPECT_FALSE(list.empty());
  EXPECT_FALSE(NamesEveryone(list)) << std::string(list.begin(), list.end());
}

// Otherwise it would have more rights until the end, when it gets those of the other file.
TEST(OwnerOnlyTest, ATemporaryFileInThePlaceOfAnotherIsClosedToEveryone) {
  const Folder folder;
  {
    OutputFile old(folder.Place("out"), false, Readers::Default);
    old.Commit();
  }
  // Shows that the test can see an open file.
  ASSERT_EQ(folder.Files().size(), 1U);
  EXPECT_TRUE(NamesEveryone(ListOf(folder.Files().front())));
  OutputFile output(folder.Place("out"), true, Readers::Default);
  const auto files = folder.Files();
  ASSERT_EQ(files.size(), 2U);
  for (const std::wstring& file : files) {
    const bool isTemporary = file.find(L".latchkey-") != std::wstring::npos;
    EXPECT_EQ(NamesEveryone(ListOf(file)), !isTemporary);
  }
}

}  // namespace
}  // namespace latchkey::test
