// The version resource that installers and the Explorer read.
#include "tests/com/server/loaded_server.h"

namespace latchkey::test {
namespace {

TEST(VersionResourceTest, HasProductAndVersion) {
  const LoadedServer server;
  const std::wstring path = server.Path();
  DWORD ignored = 0;
  std::vector<std::uint8_t> information(GetFileVersionInfoSizeW(path.c_str(), &ignored));
  ASSERT_TRUE(GetFileVersionInfoW(path.c_str(), 0, static_cast<DWORD>(information.size()),
                                  information.data()));
  void* found = nullptr;
  UINT size = 0;
  ASSERT_TRUE(VerQueryValueW(information.data(), L"\\", &found, &size));
  const auto* const fixed = static_cast<const VS_FIXEDFILEINFO*>(found);
  EXPECT_EQ(fixed->dwFileVersionMS, 0x00010000U);
  EXPECT_EQ(fixed->dwFileType, static_cast<DWORD>(VFT_DLL));
  ASSERT_TRUE(VerQueryValueW(information.data(), L"\\StringFileInfo\\040904B0\\ProductName", &found,
                             &size));
  EXPECT_STREQ(static_cast<const wchar_t*>(found), L"Latchkey");
}

}  // namespace
}  // namespace latchkey::test
