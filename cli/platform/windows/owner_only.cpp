#include "cli/platform/windows/owner_only.h"

#include <sddl.h>

#include <string>
#include <vector>

#include "cli/platform/windows/handles.h"

namespace latchkey::cli {
namespace {

// The user's identifier in its text form, S-1-..., or empty.
std::wstring UserIdentifier() {
  HANDLE opened = nullptr;
  if (!OpenProcessToken(GetCurrentProcess(), TOKEN_QUERY, &opened)) return {};
  const UniqueFile token = Owned(opened);
  DWORD size = 0;
  GetTokenInformation(opened, TokenUser, nullptr, 0, &size);
  std::vector<std::uint64_t> storage(size / sizeof(std::uint64_t) +
                                     1);  // aligned for the structure
  if (!GetTokenInformation(opened, TokenUser, storage.data(), size, &size)) return {};
  wchar_t* text = nullptr;
  if (!ConvertSidToStringSidW(reinterpret_cast<TOKEN_USER*>(storage.data())->User.Sid, &text)) {
    return {};
  }
  std::wstring identifier = text;
  LocalFree(text);
  return identifier;
}

}  // namespace

// A protected list (P) inherits nothing from the folder; FA is every right to a file.
OwnerOnly::OwnerOnly() {
  const std::wstring user = UserIdentifier();
  if (user.empty()) return;
  const std::wstring rights = L"D:P(A;;FA;;;" + user + L")";
  ConvertStringSecurityDescriptorToSecurityDescriptorW(rights.c_str(), SDDL_REVISION_1,
                                                       &attributes_.lpSecurityDescriptor, nullptr);
}

OwnerOnly::~OwnerOnly() { LocalFree(attributes_.lpSecurityDescriptor); }

SECURITY_ATTRIBUTES* OwnerOnly::Get() noexcept {
  return attributes_.lpSecurityDescriptor != nullptr ? &attributes_ : nullptr;
}

}  // namespace latchkey::cli
