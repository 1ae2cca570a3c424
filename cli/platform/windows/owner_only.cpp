#include "cli/platform/windows/owner_only.h"

#include <sddl.h>

#include <cstdint>
#include <string>
#include <vector>

namespace latchkey::cli {
namespace {

// The user's identifier in its text form, S-1-..., or empty.
std::wstring UserIdentifier() {
  UniqueObject token;
  if (!OpenProcessToken(GetCurrentProcess(), TOKEN_QUERY, token.Put())) return {};
  DWORD size = 0;
  GetTokenInformation(token.Get(), TokenUser, nullptr, 0, &size);
  std::vector<std::uint64_t> storage(size / sizeof(std::uint64_t) + 1);  // aligned
  if (!GetTokenInformation(token.Get(), TokenUser, storage.data(), size, &size)) return {};
  UniqueLocal<wchar_t*> text;
  PSID const user = reinterpret_cast<TOKEN_USER*>(storage.data())->User.Sid;
  return ConvertSidToStringSidW(user, text.Put()) ? text.Get() : std::wstring();
}

}  // namespace

// A protected list (P) inherits nothing from the folder; FA is every right to a file.
OwnerOnly::OwnerOnly() {
  const std::wstring user = UserIdentifier();
  if (user.empty()) return;
  const std::wstring rights = L"D:P(A;;FA;;;" + user + L")";
  ConvertStringSecurityDescriptorToSecurityDescriptorW(rights.c_str(), SDDL_REVISION_1,
                                                       rights_.Put(), nullptr);
  attributes_.lpSecurityDescriptor = rights_.Get();
}

SECURITY_ATTRIBUTES* OwnerOnly::Get() noexcept { return rights_ ? &attributes_ : nullptr; }

}  // namespace latchkey::cli
