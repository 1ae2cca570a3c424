// The contents of the type library: the members in the order of their slots, their arguments and
// defaults, and the help texts.
#include <map>
#include <sstream>

#include "tests/com/server/loaded_server.h"

namespace latchkey::test {
namespace {

class TypeLibraryTest : public testing::Test {
 protected:
  TypeLibraryTest() {
    EXPECT_EQ(LoadTypeLibEx(LoadedServer().Path().c_str(), REGKIND_NONE, library.Put()), S_OK);
  }

  [[nodiscard]] UniqueInterface<ITypeInfo> Describe(REFIID id) const {
    UniqueInterface<ITypeInfo> typeInfo;
    EXPECT_EQ(library.Get()->GetTypeInfoOfGuid(id, typeInfo.Put()), S_OK);
    return typeInfo;
  }

  // The interface with its vtable members.
  [[nodiscard]] UniqueInterface<ITypeInfo> DescribeSlots(REFIID id) const {
    const auto late = Describe(id);
    HREFTYPE reference = 0;
    UniqueInterface<ITypeInfo> early;
    EXPECT_EQ(late.Get()->GetRefTypeOfImplType(static_cast<UINT>(-1), &reference), S_OK);
    EXPECT_EQ(late.Get()->GetRefTypeInfo(reference, early.Put()), S_OK);
    return early;
  }

  // For example "latchkeyHashMD5 = 1" for each member of an enum, which must have a help text.
  [[nodiscard]] std::vector<std::wstring> Constants(std::wstring name) const;

  Apartment apartment;
  UniqueInterface<ITypeLib> library;
};

std::wstring HelpOf(ITypeInfo* typeInfo, MEMBERID member) {
  BSTR help = nullptr;
  EXPECT_EQ(typeInfo->GetDocumentation(member, nullptr, &help, nullptr, nullptr), S_OK);
  return Take(help);
}

std::wstring TypeName(const TYPEDESC& type) {
  static const std::map<VARTYPE, std::wstring> names = {
      {VT_I2, L"short"},        {VT_I4, L"long"},  {VT_BOOL, L"bool"}, {VT_BSTR, L"text"},
      {VT_VARIANT, L"variant"}, {VT_UI1, L"byte"}, {VT_VOID, L"void"}, {VT_HRESULT, L"hresult"}};
  if (type.vt == VT_PTR) return TypeName(*type.lptdesc) + L"*";
  if (type.vt == VT_SAFEARRAY) return L"array of " + TypeName(*type.lptdesc);
  const auto found = names.find(type.vt);
  return found != names.end() ? found->second : std::to_wstring(type.vt);
}

std::wstring KindName(INVOKEKIND kind) {
  if (kind == INVOKE_PROPERTYGET) return L"get ";
  return kind == INVOKE_PROPERTYPUT ? L"put " : L"";
}

std::wstring DefaultOf(const PARAMDESC& parameter) {
  if ((parameter.wParamFlags & PARAMFLAG_FHASDEFAULT) == 0) return L"";
  const VARIANT& value = parameter.pparamdescex->varDefaultValue;
  if (V_VT(&value) == VT_BSTR) return L" = \"" + std::wstring(V_BSTR(&value)) + L"\"";
  ScopedVariant number;
  EXPECT_EQ(VariantChangeType(&number.Get(), const_cast<VARIANT*>(&value), 0, VT_I4), S_OK);
  return L" = " + std::to_wstring(V_I4(&number.Get()));
}

// For example "7 CreateHash(text strInText = "") text*".
std::wstring Declaration(ITypeInfo* typeInfo, const FUNCDESC& function) {
  BSTR names[8] = {};
  UINT count = 0;
  EXPECT_EQ(typeInfo->GetNames(function.memid, names, 8, &count), S_OK);
  std::wostringstream text;
  text << function.memid << L' ' << KindName(function.invkind) << names[0] << L'(';
  std::wstring result;
  for (SHORT i = 0; i < function.cParams; ++i) {
    const ELEMDESC& parameter = function.lprgelemdescParam[i];
    const USHORT flags = parameter.paramdesc.wParamFlags;
    if ((flags & PARAMFLAG_FRETVAL) != 0) {
      result = L" " + TypeName(parameter.tdesc);
      continue;
    }
    text << (i > 0 ? L", " : L"") << ((flags & PARAMFLAG_FOUT) != 0 ? L"ref " : L"")
         << ((flags & PARAMFLAG_FOPT) != 0 ? L"optional " : L"") << TypeName(parameter.tdesc);
    // The system returns no name for the value of a property put.
    if (function.invkind == INVOKE_FUNC) text << L' ' << names[i + 1];
    text << DefaultOf(parameter.paramdesc);
  }
  for (BSTR name : names) SysFreeString(name);
  return text.str() + L")" + result;
}

std::wstring ConstantAt(ITypeInfo* typeInfo, UINT index) {
  VARDESC* constant = nullptr;
  EXPECT_EQ(typeInfo->GetVarDesc(index, &constant), S_OK);
  EXPECT_EQ(constant->varkind, VAR_CONST);
  BSTR name = nullptr;
  EXPECT_EQ(typeInfo->GetDocumentation(constant->memid, &name, nullptr, nullptr, nullptr), S_OK);
  const LONG value = V_I4(constant->lpvarValue);
  typeInfo->ReleaseVarDesc(constant);
  return Take(name) + L" = " + std::to_wstring(value);
}

std::vector<std::wstring> TypeLibraryTest::Constants(std::wstring name) const {
  UniqueInterface<ITypeInfo> found;
  MEMBERID member = 0;
  USHORT count = 1;
  EXPECT_EQ(library.Get()->FindName(name.data(), 0, found.Put(), &member, &count), S_OK);
  if (count != 1) return {};
  EXPECT_NE(HelpOf(found.Get(), MEMBERID_NIL), L"");
  const TYPEATTR attributes = AttributesOf(found.Get());
  EXPECT_EQ(attributes.typekind, TKIND_ENUM);
  std::vector<std::wstring> constants;
  for (UINT i = 0; i < attributes.cVars; ++i) constants.push_back(ConstantAt(found.Get(), i));
  return constants;
}

// The members after those of IDispatch, each in its slot.
std::vector<std::wstring> Declarations(ITypeInfo* typeInfo) {
  std::vector<std::wstring> declarations;
  for (UINT i = 0; i < AttributesOf(typeInfo).cFuncs; ++i) {
    FUNCDESC* function = nullptr;
    EXPECT_EQ(typeInfo->GetFuncDesc(i, &function), S_OK);
    EXPECT_EQ(function->oVft, static_cast<SHORT>((7 + i) * sizeof(void*)));
    declarations.push_back(Declaration(typeInfo, *function));
    typeInfo->ReleaseFuncDesc(function);
  }
  return declarations;
}

TEST_F(TypeLibraryTest, IsVersionOneOfLatchkey) {
  TLIBATTR* attributes = nullptr;
  ASSERT_EQ(library.Get()->GetLibAttr(&attributes), S_OK);
  EXPECT_TRUE(IsEqualGUID(attributes->guid, LIBID_Latchkey));
  EXPECT_EQ(attributes->wMajorVerNum, 1);
  EXPECT_EQ(attributes->wMinorVerNum, 0);
  EXPECT_EQ(attributes->syskind, sizeof(void*) == 8 ? SYS_WIN64 : SYS_WIN32);
  library.Get()->ReleaseTLibAttr(attributes);
  BSTR name = nullptr;
  ASSERT_EQ(library.Get()->GetDocumentation(-1, &name, nullptr, nullptr, nullptr), S_OK);
  EXPECT_EQ(Take(name), L"Latchkey");
}

TEST_F(TypeLibraryTest, ShowsItsEnumsInterfacesAndClassesAndNothingElse) {
  std::vector<std::wstring> names;
  for (UINT i = 0; i < library.Get()->GetTypeInfoCount(); ++i) {
    BSTR name = nullptr;
    ASSERT_EQ(
        library.Get()->GetDocumentation(static_cast<INT>(i), &name, nullptr, nullptr, nullptr),
        S_OK);
    names.push_back(Take(name));
  }
  EXPECT_EQ(names, (std::vector<std::wstring>{
                       L"LatchkeyHash", L"LatchkeyCipher", L"LatchkeyErrorType", L"_clsMain",
                       L"_clsCryptoAPI", L"_clsTimer", L"clsMain", L"clsCryptoAPI", L"clsTimer"}));
}

// Clients compile the names into their programs: name and value are fixed.
TEST_F(TypeLibraryTest, EnumsNameTheHashesCiphersAndErrorTypes) {
  EXPECT_EQ(Constants(L"LatchkeyHash"),
            (std::vector<std::wstring>{L"latchkeyHashMD5 = 1", L"latchkeyHashMD4 = 2",
                                       L"latchkeyHashMD2 = 3", L"latchkeyHashSHA1 = 4"}));
  EXPECT_EQ(Constants(L"LatchkeyCipher"),
            (std::vector<std::wstring>{L"latchkeyCipherRC4 = 1", L"latchkeyCipherRC2 = 2",
                                       L"latchkeyCipherDES = 3", L"latchkeyCipher3DES = 4",
                                       L"latchkeyCipherTwoKey3DES = 5"}));
  EXPECT_EQ(
      Constants(L"LatchkeyErrorType"),
      (std::vector<std::wstring>{L"latchkeyErrorRunTime = 1", L"latchkeyErrorApplication = 2"}));
}

TEST_F(TypeLibraryTest, EveryClassHasItsDualInterfaceAsDefault) {
  const std::pair<CLSID, IID> classes[] = {{CLSID_clsMain, IID__clsMain},
                                           {CLSID_clsCryptoAPI, IID__clsCryptoAPI},
                                           {CLSID_clsTimer, IID__clsTimer}};
  for (const auto& [classId, interfaceId] : classes) {
    const auto described = Describe(classId);
    INT flags = 0;
    HREFTYPE reference = 0;
    UniqueInterface<ITypeInfo> found;
    ASSERT_EQ(described.Get()->GetImplTypeFlags(0, &flags), S_OK);
    ASSERT_EQ(described.Get()->GetRefTypeOfImplType(0, &reference), S_OK);
    ASSERT_EQ(described.Get()->GetRefTypeInfo(reference, found.Put()), S_OK);
    EXPECT_EQ(flags, IMPLTYPEFLAG_FDEFAULT);
    EXPECT_TRUE(IsEqualGUID(AttributesOf(found.Get()).guid, interfaceId));
  }
}

WORD FlagsOf(const UniqueInterface<ITypeInfo>& typeInfo) {
  return AttributesOf(typeInfo.Get()).wTypeFlags;
}

// With both flags the system marshals the interface without a separate proxy.
TEST_F(TypeLibraryTest, EveryInterfaceIsDualAndOfAutomationTypes) {
  constexpr WORD kExpected = TYPEFLAG_FDUAL | TYPEFLAG_FOLEAUTOMATION;
  for (const IID& id : {IID__clsMain, IID__clsCryptoAPI, IID__clsTimer}) {
    EXPECT_EQ(FlagsOf(DescribeSlots(id)) & kExpected, kExpected);
  }
}

// So Visual Basic refuses a misspelled member when it compiles, with either half of the dual
// interface.
TEST_F(TypeLibraryTest, EveryInterfaceIsNonextensible) {
  for (const IID& id : {IID__clsMain, IID__clsCryptoAPI, IID__clsTimer}) {
    EXPECT_NE(FlagsOf(Describe(id)) & TYPEFLAG_FNONEXTENSIBLE, 0);
    EXPECT_NE(FlagsOf(DescribeSlots(id)) & TYPEFLAG_FNONEXTENSIBLE, 0);
  }
}

TEST_F(TypeLibraryTest, TheServiceInterfaceHasItsMembersInOrder) {
  EXPECT_EQ(
      Declarations(DescribeSlots(IID__clsCryptoAPI).Get()),
      (std::vector<std::wstring>{
          L"1 put InputData(ref array of byte*)",
          L"2 get OutputData() array of byte*",
          L"3 put EnhancedProvider(ref bool*)",
          L"4 get Password() array of byte*",
          L"4 put Password(ref array of byte*)",
          L"5 put UseDefaultPWD(ref bool*)",
          L"6 CreateHash(optional text strInText = \"\", optional short intHashChoice = 0, "
          L"optional bool blnConvertToHex = 0, optional bool blnAppendPassword = 0, "
          L"optional bool blnCaseSensitive = 0) text*",
          L"7 CreateRandom(optional long lngDataLength = 0, optional bool blnRetExactLength = 0, "
          L"optional bool blnConvertToHex = 0, optional bool blnUseUppercase = 0) text*",
          L"8 CreateSaltValue(optional long lngReturnLength = 0, "
          L"optional bool blnLetttersOnly = 0) variant*",
          L"9 Decrypt(optional short intHashType = 0, optional short intCipherType = 0) bool*",
          L"10 Encrypt(optional short intHashType = 0, optional short intCipherType = 0) bool*",
          L"11 ByteArrayToString(ref array of byte* arByte) text*",
          L"12 StringToByteArray(ref variant* varInput) array of byte*",
          L"13 ConvertStringFromHex(text strHex) text*",
          L"14 ConvertStringToHex(text strInput, ref optional bool* blnRetUppercase = 0) text*",
      }));
}

TEST_F(TypeLibraryTest, TheOtherInterfacesHaveTheirMembersInOrder) {
  EXPECT_EQ(Declarations(DescribeSlots(IID__clsMain).Get()),
            (std::vector<std::wstring>{
                L"1 get ErrorLocationID() short*", L"2 get ErrorType() short*",
                L"3 get RTErrorNumber() long*", L"4 get RTErrorDescription() text*",
                L"5 get AppErrorNumber() long*", L"6 get AppErrorDescription() text*",
                L"7 get ErrorExists() bool*", L"8 get ErrorMachineState() short*",
                L"9 DoesInternetConnectionExist() bool*"}));
  EXPECT_EQ(Declarations(DescribeSlots(IID__clsTimer).Get()),
            (std::vector<std::wstring>{L"1 Start()", L"2 GetElapsedTime() long*"}));
}

// The two halves of Password share one number, for which the system returns the text of the first.
TEST_F(TypeLibraryTest, ThePropertiesOfTheServiceObjectHaveTheirHelpTexts) {
  const std::map<MEMBERID, std::wstring> expected = {
      {1, L"Input only.  Data to be Encrypted/Decrypted."},
      {2, L"Read only.  Return encrypted/decrypted data in byte array format."},
      {3, L"Returns a boolean flag designating if the enhanced provider is being used."},
      {4, L"Returns password in byte array format."},
      {5,
       L"Input only.  Boolean flag used to override Password property.  TRUE=Use default password. "
       L" FALSE=Create random data password (used for initialization vectors)."},
  };
  const auto service = DescribeSlots(IID__clsCryptoAPI);
  for (const auto& [member, help] : expected) EXPECT_EQ(HelpOf(service.Get(), member), help);
}

TEST_F(TypeLibraryTest, EveryMemberHasAHelpText) {
  for (const IID& id : {IID__clsMain, IID__clsCryptoAPI, IID__clsTimer}) {
    const auto described = DescribeSlots(id);
    for (UINT i = 0; i < AttributesOf(described.Get()).cFuncs; ++i) {
      FUNCDESC* function = nullptr;
      ASSERT_EQ(described.Get()->GetFuncDesc(i, &function), S_OK);
      EXPECT_NE(HelpOf(described.Get(), function->memid), L"");
      described.Get()->ReleaseFuncDesc(function);
    }
  }
}

}  // namespace
}  // namespace latchkey::test
