// Libraries that are loaded on demand come from the system folder.
#include "platform/windows/system_library.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/support/fault_of.h"

namespace latchkey::test {
namespace {

using platform::FunctionOf;
using platform::LoadSystemLibrary;

// The file name of this program.
std::wstring OwnName() {
  std::wstring path(MAX_PATH, L'\0');
  path.resize(GetModuleFileNameW(nullptr, path.data(), MAX_PATH));
  return path.substr(path.find_last_of(L'\\') + 1);
}

// The loader takes a loaded module of any folder for a name without a folder.
TEST(SystemLibraryTest, AModuleOfAnotherFolderIsNotFound) {
  const std::wstring name = OwnName();
  ASSERT_EQ(LoadLibraryW(name.c_str()), GetModuleHandleW(nullptr)) << "not found by its name";
  EXPECT_EQ(FaultOf([&] { return LoadSystemLibrary(name.c_str()); }), 53);
}

TEST(SystemLibraryTest, ALibraryOfTheSystemIsFoundWithItsFunctions) {
  const auto library = LoadSystemLibrary(L"wininet.dll");
  EXPECT_EQ(library.Get(), GetModuleHandleW(L"wininet.dll"));
  EXPECT_NE(FunctionOf(library.Get(), "InternetGetConnectedState"), nullptr);
  EXPECT_EQ(FaultOf([&] { return FunctionOf(library.Get(), "NoSuchFunction"); }), 453);
}

}  // namespace
}  // namespace latchkey::test
