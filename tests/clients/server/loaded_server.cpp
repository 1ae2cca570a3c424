#include "tests/clients/server/loaded_server.h"

namespace latchkey::test {

// The DLL stands beside the test program.
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

}  // namespace latchkey::test
