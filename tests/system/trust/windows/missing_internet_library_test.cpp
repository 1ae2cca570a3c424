// The component on a system without wininet, which the runner hides from this program.
#include "tests/com/com_client.h"

namespace latchkey::test {
namespace {

using MissingInternetLibraryTest = ClientTest;

TEST_F(MissingInternetLibraryTest, TheConnectionQueryRecordsItAndGivesFalse) {
  ASSERT_EQ(LoadLibraryW(L"wininet.dll"), nullptr) << "the library is not hidden";
  VARIANT_BOOL connected = VARIANT_TRUE;
  EXPECT_EQ(Main()->DoesInternetConnectionExist(&connected), S_OK);
  EXPECT_EQ(connected, VARIANT_FALSE);
  VARIANT_BOOL exists = VARIANT_FALSE;
  short location = 0;
  short type = 0;
  LONG number = 0;
  BSTR description = nullptr;
  Main()->get_ErrorExists(&exists);
  Main()->get_ErrorLocationID(&location);
  Main()->get_ErrorType(&type);
  Main()->get_RTErrorNumber(&number);
  Main()->get_RTErrorDescription(&description);
  EXPECT_EQ(exists, VARIANT_TRUE);
  EXPECT_EQ(location, 419);
  EXPECT_EQ(type, 1);
  EXPECT_EQ(number, 53);
  EXPECT_EQ(Take(description), L"File not found");
}

TEST_F(MissingInternetLibraryTest, OtherOperationsWork) {
  BSTR digest = nullptr;
  EXPECT_EQ(
      Api()->CreateHash(Bstr(L"abc").Get(), 1, VARIANT_TRUE, VARIANT_FALSE, VARIANT_FALSE, &digest),
      S_OK);
  EXPECT_EQ(Take(digest), L"900150983CD24FB0D6963F7D28E17F72");  // RFC 1321
}

}  // namespace
}  // namespace latchkey::test
