// The DLL loaded by hand, without registration, and its entry points.
#pragma once

#include "tests/com/com_client.h"

namespace latchkey::test {

class LoadedServer {
 public:
  LoadedServer();
  LoadedServer(const LoadedServer&) = delete;
  LoadedServer& operator=(const LoadedServer&) = delete;
  ~LoadedServer() { Unload(); }

  // Unloads the DLL, even if it is in use.
  void Unload();

  [[nodiscard]] HMODULE Module() const { return module_; }
  [[nodiscard]] std::wstring Path() const;

  HRESULT GetClassObject(REFCLSID classId, REFIID interfaceId, void** object) const {
    return getClassObject_(classId, interfaceId, object);
  }
  [[nodiscard]] HRESULT CanUnloadNow() const { return canUnloadNow_(); }
  [[nodiscard]] HRESULT Register() const { return registerServer_(); }
  [[nodiscard]] HRESULT Unregister() const { return unregisterServer_(); }
  HRESULT Install(bool install, const wchar_t* options) const {
    return install_(install ? TRUE : FALSE, options);
  }

  // The server's type library from its objects.
  [[nodiscard]] UniqueInterface<ITypeLib> TypeLibrary() const;

  // Null, with a failed expectation, if it is not available.
  [[nodiscard]] UniqueInterface<IClassFactory> Factory(REFCLSID classId) const;

  // The same for an object.
  template <class Interface>
  [[nodiscard]] UniqueInterface<Interface> Create(REFCLSID classId, REFIID interfaceId) const {
    void* object = nullptr;
    EXPECT_EQ(Factory(classId).Get()->CreateInstance(nullptr, interfaceId, &object), S_OK);
    return UniqueInterface<Interface>(static_cast<Interface*>(object));
  }

 private:
  template <class Function>
  void Find(const char* name, Function*& function) const {
    function = reinterpret_cast<Function*>(reinterpret_cast<void*>(GetProcAddress(module_, name)));
    EXPECT_NE(function, nullptr) << name;
  }

  HMODULE module_;
  decltype(&DllGetClassObject) getClassObject_ = nullptr;
  decltype(&DllCanUnloadNow) canUnloadNow_ = nullptr;
  HRESULT(STDAPICALLTYPE* registerServer_)() = nullptr;
  HRESULT(STDAPICALLTYPE* unregisterServer_)() = nullptr;
  HRESULT(STDAPICALLTYPE* install_)(BOOL install, const wchar_t* options) = nullptr;
};

class LoadedServerTest : public testing::Test {
 protected:
  Apartment apartment;
  LoadedServer server;
};

// The number of references to a type library, including the caller's. Every client that loads a
// file gets the same object.
ULONG ReferencesTo(ITypeLib* library);

// A copy of a type's attributes, of which the numbers and identifiers may be used.
TYPEATTR AttributesOf(ITypeInfo* typeInfo);

}  // namespace latchkey::test
