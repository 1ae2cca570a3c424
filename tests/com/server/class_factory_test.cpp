// The entry points and the class factories.
#include "tests/com/server/loaded_server.h"

namespace latchkey::test {
namespace {

class ClassFactoryTest : public LoadedServerTest {
 protected:
  HRESULT Create(REFCLSID classId, REFIID interfaceId, IUnknown* outer = nullptr) const {
    void* object = server.Module();  // any pointer that is not null
    const HRESULT result =
        server.Factory(classId).Get()->CreateInstance(outer, interfaceId, &object);
    EXPECT_EQ(SUCCEEDED(result), object != nullptr);
    if (SUCCEEDED(result)) static_cast<IUnknown*>(object)->Release();
    return result;
  }
};

TEST_F(ClassFactoryTest, MakesObjectsOfAllThreeClassesForTheirInterfaces) {
  EXPECT_EQ(Create(CLSID_clsMain, IID__clsMain), S_OK);
  EXPECT_EQ(Create(CLSID_clsCryptoAPI, IID__clsCryptoAPI), S_OK);
  EXPECT_EQ(Create(CLSID_clsTimer, IID__clsTimer), S_OK);
  for (const IID& interfaceId :
       {IID_IUnknown, IID_IDispatch, IID_ISupportErrorInfo, IID_IProvideClassInfo}) {
    EXPECT_EQ(Create(CLSID_clsTimer, interfaceId), S_OK);
  }
}

TEST_F(ClassFactoryTest, RefusesAggregation) {
  const auto outer = server.Create<IUnknown>(CLSID_clsTimer, IID_IUnknown);
  EXPECT_EQ(Create(CLSID_clsCryptoAPI, IID_IUnknown, outer.Get()), CLASS_E_NOAGGREGATION);
}

TEST_F(ClassFactoryTest, RefusesAnInterfaceThatTheClassDoesNotHave) {
  EXPECT_EQ(Create(CLSID_clsTimer, IID__clsMain), E_NOINTERFACE);
  EXPECT_EQ(Create(CLSID_clsTimer, IID_IClassFactory), E_NOINTERFACE);
}

TEST_F(ClassFactoryTest, ARefusedEntryObjectDoesNotChangeTheErrorRecord) {
  const auto main = server.Create<_clsMain>(CLSID_clsMain, IID__clsMain);
  const auto api = server.Create<_clsCryptoAPI>(CLSID_clsCryptoAPI, IID__clsCryptoAPI);
  VARIANT_BOOL done = VARIANT_FALSE;
  ASSERT_EQ(api.Get()->Encrypt(0, 0, &done), S_OK);
  EXPECT_EQ(Create(CLSID_clsMain, IID__clsTimer), E_NOINTERFACE);
  short location = 0;
  EXPECT_EQ(main.Get()->get_ErrorLocationID(&location), S_OK);
  EXPECT_EQ(location, 718);
}

TEST_F(ClassFactoryTest, NullPointersAreRefused) {
  EXPECT_EQ(server.GetClassObject(CLSID_clsMain, IID_IClassFactory, nullptr), E_POINTER);
  const auto factory = server.Factory(CLSID_clsMain);
  EXPECT_EQ(factory.Get()->CreateInstance(nullptr, IID_IUnknown, nullptr), E_POINTER);
  EXPECT_EQ(factory.Get()->QueryInterface(IID_IUnknown, nullptr), E_POINTER);
}

TEST_F(ClassFactoryTest, AnUnknownClassOrFactoryInterfaceIsRefused) {
  void* object = server.Module();
  EXPECT_EQ(server.GetClassObject(IID__clsMain, IID_IClassFactory, &object),
            CLASS_E_CLASSNOTAVAILABLE);
  EXPECT_EQ(object, nullptr);
  object = server.Module();
  EXPECT_EQ(server.GetClassObject(CLSID_clsMain, IID__clsMain, &object), E_NOINTERFACE);
  EXPECT_EQ(object, nullptr);
}

TEST_F(ClassFactoryTest, AnObjectIsOneIdentityUnderAllItsInterfaces) {
  const auto timer = server.Create<_clsTimer>(CLSID_clsTimer, IID__clsTimer);
  void* expected = nullptr;
  ASSERT_EQ(timer.Get()->QueryInterface(IID_IUnknown, &expected), S_OK);
  const UniqueInterface<IUnknown> identity(static_cast<IUnknown*>(expected));
  for (const IID& interfaceId :
       {IID_IDispatch, IID_ISupportErrorInfo, IID_IProvideClassInfo, IID__clsTimer}) {
    void* found = nullptr;
    ASSERT_EQ(timer.Get()->QueryInterface(interfaceId, &found), S_OK);
    const UniqueInterface<IUnknown> other(static_cast<IUnknown*>(found));
    void* again = nullptr;
    ASSERT_EQ(other.Get()->QueryInterface(IID_IUnknown, &again), S_OK);
    const UniqueInterface<IUnknown> owner(static_cast<IUnknown*>(again));
    EXPECT_EQ(again, expected);
  }
  void* none = expected;
  EXPECT_EQ(timer.Get()->QueryInterface(IID__clsMain, &none), E_NOINTERFACE);
  EXPECT_EQ(none, nullptr);
  EXPECT_EQ(timer.Get()->QueryInterface(IID_IUnknown, nullptr), E_POINTER);
}

}  // namespace
}  // namespace latchkey::test
