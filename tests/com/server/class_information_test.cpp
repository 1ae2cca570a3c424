// The class information of objects, for tools that display unknown objects.
#include "tests/com/server/loaded_server.h"

namespace latchkey::test {
namespace {

class ClassInformationTest : public LoadedServerTest {
 protected:
  [[nodiscard]] UniqueInterface<ITypeInfo> Describe(REFCLSID classId) const {
    const auto object = server.Create<IProvideClassInfo>(classId, IID_IProvideClassInfo);
    UniqueInterface<ITypeInfo> typeInfo;
    EXPECT_EQ(object.Get()->GetClassInfo(typeInfo.Put()), S_OK);
    return typeInfo;
  }
};

TEST_F(ClassInformationTest, EveryObjectShowsItsOwnClass) {
  for (const CLSID& classId : {CLSID_clsMain, CLSID_clsCryptoAPI, CLSID_clsTimer}) {
    const TYPEATTR attributes = AttributesOf(Describe(classId).Get());
    EXPECT_EQ(attributes.typekind, TKIND_COCLASS);
    EXPECT_TRUE(IsEqualGUID(attributes.guid, classId));
  }
}

TEST_F(ClassInformationTest, TheClassHasTheNameThatClientsKnow) {
  BSTR name = nullptr;
  ASSERT_EQ(Describe(CLSID_clsCryptoAPI)
                .Get()
                ->GetDocumentation(MEMBERID_NIL, &name, nullptr, nullptr, nullptr),
            S_OK);
  EXPECT_EQ(Take(name), L"clsCryptoAPI");
}

TEST_F(ClassInformationTest, ANullPointerIsRefused) {
  const auto object = server.Create<IProvideClassInfo>(CLSID_clsTimer, IID_IProvideClassInfo);
  EXPECT_EQ(object.Get()->GetClassInfo(nullptr), E_POINTER);
}

// Without events, IProvideClassInfo2 has no source interface to name.
TEST_F(ClassInformationTest, NoEventInterfaceIsOffered) {
  const auto object = server.Create<IUnknown>(CLSID_clsMain, IID_IUnknown);
  for (const IID& interfaceId : {IID_IProvideClassInfo2, IID_IConnectionPointContainer}) {
    void* found = nullptr;
    EXPECT_EQ(object.Get()->QueryInterface(interfaceId, &found), E_NOINTERFACE);
    EXPECT_EQ(found, nullptr);
  }
}

}  // namespace
}  // namespace latchkey::test
