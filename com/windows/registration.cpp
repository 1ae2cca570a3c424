#include "com/windows/registration.h"

#include <array>
#include <string>
#include <vector>

#include "com/windows/classes.h"
#include "com/windows/latchkey.h"
#include "com/windows/module.h"
#include "com/windows/type_library.h"

// Exported by the system's oleaut32 and its import library, but not declared by mingw-w64.
STDAPI RegisterTypeLibForUser(ITypeLib* library, OLECHAR* path, OLECHAR* helpFolder);
STDAPI UnRegisterTypeLibForUser(REFGUID libraryId, WORD major, WORD minor, LCID locale,
                                SYSKIND system);

namespace latchkey::com {
namespace {

constexpr WORD kMajorVersion = 1;
constexpr WORD kMinorVersion = 0;
constexpr bool kIs64Bit = sizeof(void*) == 8;
constexpr SYSKIND kSystem = kIs64Bit ? SYS_WIN64 : SYS_WIN32;
constexpr REGSAM kOtherBitness = kIs64Bit ? KEY_WOW64_32KEY : KEY_WOW64_64KEY;

struct RegistryValue {
  std::wstring path;
  const wchar_t* name;  // null for the key's default value
  std::wstring text;
};

std::wstring ToText(const GUID& guid) {
  std::array<wchar_t, 39> text{};
  StringFromGUID2(guid, text.data(), static_cast<int>(text.size()));
  return text.data();
}

std::wstring ClassPath(const ClassDescription& description) {
  return L"CLSID\\" + ToText(description.classId);
}

std::wstring VersionedProgId(const ClassDescription& description) {
  return std::wstring(description.progId) + L".1";
}

std::vector<RegistryValue> ValuesOf(const ClassDescription& description,
                                    const std::wstring& modulePath) {
  const std::wstring classId = ToText(description.classId);
  const std::wstring path = ClassPath(description);
  const std::wstring progId = description.progId;
  const std::wstring versionedProgId = VersionedProgId(description);
  return {
      {path, nullptr, description.description},
      {path + L"\\InprocServer32", nullptr, modulePath},
      {path + L"\\InprocServer32", L"ThreadingModel", L"Apartment"},
      {path + L"\\ProgID", nullptr, versionedProgId},
      {path + L"\\VersionIndependentProgID", nullptr, progId},
      {path + L"\\TypeLib", nullptr, ToText(LIBID_Latchkey)},
      {path + L"\\Version", nullptr, L"1.0"},
      {path + L"\\Programmable", nullptr, L""},
      {progId, nullptr, description.description},
      {progId + L"\\CLSID", nullptr, classId},
      {progId + L"\\CurVer", nullptr, versionedProgId},
      {versionedProgId, nullptr, description.description},
      {versionedProgId + L"\\CLSID", nullptr, classId},
  };
}

HRESULT RegisterTypeLibrary(RegistryScope scope, std::wstring& modulePath) {
  ITypeLib* library = nullptr;
  const HRESULT loaded = OwnTypeLibrary(&library);
  if (FAILED(loaded)) return loaded;
  const auto enter = scope == RegistryScope::Machine ? RegisterTypeLib : RegisterTypeLibForUser;
  return enter(library, modulePath.data(), nullptr);
}

HRESULT RegisterClasses(RegistryScope scope, const std::wstring& modulePath) {
  for (const ClassDescription* const description : AllClasses()) {
    for (const RegistryValue& value : ValuesOf(*description, modulePath)) {
      const HRESULT written = WriteRegistryText(scope, value.path, value.name, value.text);
      if (FAILED(written)) return written;
    }
  }
  return S_OK;
}

HRESULT RegisterAll(RegistryScope scope) {
  std::wstring modulePath = ModulePath();
  const HRESULT registered = RegisterTypeLibrary(scope, modulePath);
  return SUCCEEDED(registered) ? RegisterClasses(scope, modulePath) : registered;
}

HRESULT FirstFailure(HRESULT first, HRESULT second) { return FAILED(first) ? first : second; }

HRESULT UnregisterClass(RegistryScope scope, const ClassDescription& description) {
  const std::wstring path = ClassPath(description);
  HRESULT removed = DeleteRegistryTree(scope, path);
  if (RegistryKeyExists(scope, path, kOtherBitness)) return removed;
  removed = FirstFailure(removed, DeleteRegistryTree(scope, description.progId));
  return FirstFailure(removed, DeleteRegistryTree(scope, VersionedProgId(description)));
}

// Versions of the system return different codes for a library that is not registered, so this
// checks that it is not registered afterwards.
HRESULT UnregisterTypeLibrary(RegistryScope scope) {
  const auto remove =
      scope == RegistryScope::Machine ? UnRegisterTypeLib : UnRegisterTypeLibForUser;
  const HRESULT removed =
      remove(LIBID_Latchkey, kMajorVersion, kMinorVersion, LOCALE_NEUTRAL, kSystem);
  const std::wstring path =
      L"TypeLib\\" + ToText(LIBID_Latchkey) + L"\\1.0\\0\\" + (kIs64Bit ? L"win64" : L"win32");
  return RegistryKeyExists(scope, path) ? removed : S_OK;
}

}  // namespace

HRESULT RegisterServer(RegistryScope scope) {
  const HRESULT registered = RegisterAll(scope);
  if (FAILED(registered)) static_cast<void>(UnregisterServer(scope));
  return registered;
}

HRESULT UnregisterServer(RegistryScope scope) {
  HRESULT removed = UnregisterTypeLibrary(scope);
  for (const ClassDescription* const description : AllClasses()) {
    removed = FirstFailure(removed, UnregisterClass(scope, *description));
  }
  return removed;
}

HRESULT InstallServer(bool install, const wchar_t* options) {
  const std::wstring given = options != nullptr ? options : L"";
  const bool forUser = lstrcmpiW(given.c_str(), L"user") == 0;
  if (!forUser && !given.empty()) return E_INVALIDARG;
  const RegistryScope scope = forUser ? RegistryScope::User : RegistryScope::Machine;
  return install ? RegisterServer(scope) : UnregisterServer(scope);
}

}  // namespace latchkey::com
