#include "tests/com/server/loaded_server.h"

namespace latchkey::test {

// The DLL is in the folder of the test program.
LoadedServer::LoadedServer() : module_(LoadLibraryW(L"latchkey.dll")) {
  EXPECT_NE(module_, nullptr);
  Find("DllGetClassObject", getClassObject_);
  Find("DllCanUnloadNow", canUnloadNow_);
  Find("DllRegisterServer", registerServer_);
  Find("DllUnregisterServer", unregisterServer_);
  Find("DllInstall", install_);
}

void LoadedServer::Unload() {
  EXPECT_TRUE(module_ == nullptr || FreeLibrary(module_));
  module_ = nullptr;
}

std::wstring LoadedServer::Path() const {
  std::wstring path(MAX_PATH, L'\0');
  path.resize(GetModuleFileNameW(module_, path.data(), MAX_PATH));
  return path;
}

UniqueInterface<IClassFactory> LoadedServer::Factory(REFCLSID classId) const {
  void* factory = nullptr;
  EXPECT_EQ(getClassObject_(classId, IID_IClassFactory, &factory), S_OK);
  return UniqueInterface<IClassFactory>(static_cast<IClassFactory*>(factory));
}

UniqueInterface<ITypeLib> LoadedServer::TypeLibrary() const {
  const auto timer = Create<_clsTimer>(CLSID_clsTimer, IID__clsTimer);
  UniqueInterface<ITypeInfo> typeInfo;
  EXPECT_EQ(timer.Get()->GetTypeInfo(0, LOCALE_USER_DEFAULT, typeInfo.Put()), S_OK);
  UniqueInterface<ITypeLib> library;
  UINT index = 0;
  EXPECT_EQ(typeInfo.Get()->GetContainingTypeLib(library.Put(), &index), S_OK);
  return library;
}

ULONG ReferencesTo(ITypeLib* library) {
  library->AddRef();
  return library->Release();
}

TYPEATTR AttributesOf(ITypeInfo* typeInfo) {
  TYPEATTR* attributes = nullptr;
  EXPECT_EQ(typeInfo->GetTypeAttr(&attributes), S_OK);
  const TYPEATTR copy = *attributes;
  typeInfo->ReleaseTypeAttr(attributes);
  return copy;
}

}  // namespace latchkey::test
