// The component used by its manifest, without registration. These tests leave the DLL of their
// folder unregistered.
#include <filesystem>
#include <thread>

#include "tests/com/server/loaded_server.h"

namespace latchkey::test {
namespace {

constexpr const wchar_t* kNames[] = {L"Latchkey.clsMain", L"Latchkey.clsCryptoAPI",
                                     L"Latchkey.clsTimer"};

// The context of the DLL's manifest, for the thread that activates it.
class ManifestContext {
 public:
  ManifestContext() {
    const std::wstring path = std::filesystem::absolute(L"Latchkey.Component.manifest").wstring();
    ACTCTXW description = {};
    description.cbSize = sizeof(description);
    description.lpSource = path.c_str();
    context_ = CreateActCtxW(&description);
    EXPECT_NE(context_, INVALID_HANDLE_VALUE) << GetLastError();
  }
  ManifestContext(const ManifestContext&) = delete;
  ManifestContext& operator=(const ManifestContext&) = delete;
  ~ManifestContext() { ReleaseActCtx(context_); }

  [[nodiscard]] HANDLE Get() const { return context_; }

 private:
  HANDLE context_;
};

class Activation {
 public:
  explicit Activation(const ManifestContext& context) {
    EXPECT_TRUE(ActivateActCtx(context.Get(), &cookie_));
  }
  Activation(const Activation&) = delete;
  Activation& operator=(const Activation&) = delete;
  ~Activation() { DeactivateActCtx(0, cookie_); }

 private:
  ULONG_PTR cookie_ = 0;
};

void ExpectNotRegistered() {
  void* object = nullptr;
  EXPECT_EQ(CoCreateInstance(CLSID_clsTimer, nullptr, CLSCTX_INPROC_SERVER, IID_IUnknown, &object),
            REGDB_E_CLASSNOTREG);
}

class RegistrationFreeTest : public testing::Test {
 protected:
  RegistrationFreeTest() {
    const LoadedServer server;
    EXPECT_EQ(server.Install(false, L"user"), S_OK);
    EXPECT_EQ(server.Unregister(), S_OK);
    ExpectNotRegistered();
  }
  // The context leaves no classes either.
  ~RegistrationFreeTest() override { ExpectNotRegistered(); }

  Apartment apartment;
  ManifestContext context;
};

// The class of an object, by its class information.
CLSID ClassOf(IProvideClassInfo* object) {
  UniqueInterface<ITypeInfo> typeInfo;
  EXPECT_EQ(object->GetClassInfo(typeInfo.Put()), S_OK);
  return AttributesOf(typeInfo.Get()).guid;
}

TEST_F(RegistrationFreeTest, EveryClassIsMadeByItsIdentifier) {
  const Activation activation(context);
  for (const CLSID& classId : {CLSID_clsMain, CLSID_clsCryptoAPI, CLSID_clsTimer}) {
    const auto object = CreateObject<IProvideClassInfo>(classId, IID_IProvideClassInfo);
    ASSERT_NE(object.Get(), nullptr);
    EXPECT_TRUE(IsEqualCLSID(ClassOf(object.Get()), classId));
  }
}

// The identifier of a name may be one that the context made; the class is the right one.
TEST_F(RegistrationFreeTest, EveryClassIsMadeByItsNames) {
  const Activation activation(context);
  const CLSID classes[] = {CLSID_clsMain, CLSID_clsCryptoAPI, CLSID_clsTimer};
  for (int i = 0; i < 3; ++i) {
    for (const std::wstring& name : {std::wstring(kNames[i]), std::wstring(kNames[i]) + L".1"}) {
      CLSID found = {};
      ASSERT_EQ(CLSIDFromProgID(name.c_str(), &found), S_OK);
      const auto object = CreateObject<IProvideClassInfo>(found, IID_IProvideClassInfo);
      ASSERT_NE(object.Get(), nullptr);
      EXPECT_TRUE(IsEqualCLSID(ClassOf(object.Get()), classes[i]));
    }
  }
}

// Reads a text through the object of another apartment, and so through its marshaled interface.
std::wstring HexFromAnotherApartment(const ManifestContext& context, IStream* stream) {
  const Apartment apartment(COINIT_MULTITHREADED);
  const Activation activation(context);
  void* object = nullptr;
  EXPECT_EQ(CoGetInterfaceAndReleaseStream(stream, IID__clsCryptoAPI, &object), S_OK);
  if (object == nullptr) return L"";
  const UniqueInterface<_clsCryptoAPI> api(static_cast<_clsCryptoAPI*>(object));
  BSTR hex = nullptr;
  VARIANT_BOOL upperCase = VARIANT_TRUE;
  EXPECT_EQ(api.Get()->ConvertStringToHex(Bstr(L"abc").Get(), &upperCase, &hex), S_OK);
  return Take(hex);
}

TEST_F(RegistrationFreeTest, InterfacesAreMarshaledByTheTypeLibrary) {
  const Activation activation(context);
  const auto main = CreateMain();
  const auto api = CreateCryptoApi();
  ASSERT_NE(api.Get(), nullptr);
  IStream* stream = nullptr;
  ASSERT_EQ(CoMarshalInterThreadInterfaceInStream(IID__clsCryptoAPI, api.Get(), &stream), S_OK);
  std::wstring hex;
  HANDLE done = CreateEventW(nullptr, TRUE, FALSE, nullptr);
  std::thread client([&] {
    hex = HexFromAnotherApartment(context, stream);
    SetEvent(done);
  });
  DWORD index = 0;
  EXPECT_EQ(CoWaitForMultipleHandles(0, INFINITE, 1, &done, &index), S_OK);
  client.join();
  CloseHandle(done);
  EXPECT_EQ(hex, L"616263");
}

}  // namespace
}  // namespace latchkey::test
