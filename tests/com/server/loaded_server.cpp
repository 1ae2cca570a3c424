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

UniqueInterface<IClassFactory> LoadedServer::Factory(REFCLSID classId) const {
  void* factory = nullptr;
  EXPECT_EQ(getClassObject_(classId, IID_IClassFactory, &factory), S_OK);
  return UniqueInterface<IClassFactory>(static_cast<IClassFactory*>(factory));
}

UniqueInterface<ITypeLib> LoadedServer::TypeLibrary() const {
  const auto timer = Create<_clsTimer>(CLSID_clsTimer, IID__clsTimer);
  ITypeInfo* typeInfo = nullptr;
  EXPECT_EQ(timer.Get()->GetTypeInfo(0, LOCALE_USER_DEFAULT, &typeInfo), S_OK);
  const UniqueInterface<ITypeInfo> owner(typeInfo);
  ITypeLib* library = nullptr;
  UINT index = 0;
  EXPECT_EQ(typeInfo->GetContainingTypeLib(&library, &index), S_OK);
  return UniqueInterface<ITypeLib>(library);
}

ULONG ReferencesTo(ITypeLib* library) {
  library->AddRef();
  return library->Release();
}

}  // namespace latchkey::test
