#include "cli/platform/windows/file_rights.h"

#include <cstdint>
#include <vector>

namespace latchkey::cli {

// Neither call applies rights inherited from the folder, which may exceed the other file's.
void CopyRights(const std::wstring& from, HANDLE to) {
  DWORD size = 0;
  GetFileSecurityW(from.c_str(), DACL_SECURITY_INFORMATION, nullptr, 0, &size);
  std::vector<std::uint64_t> descriptor(size / sizeof(std::uint64_t) + 1);  // aligned
  const auto length = static_cast<DWORD>(descriptor.size() * sizeof(std::uint64_t));
  if (GetFileSecurityW(from.c_str(), DACL_SECURITY_INFORMATION, descriptor.data(), length, &size)) {
    SetKernelObjectSecurity(to, DACL_SECURITY_INFORMATION, descriptor.data());
  }
}

}  // namespace latchkey::cli
