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
  EXPECT_EQ(ReadRecord(Main()), (ErrorRecord{419, 1, 53, L"File not found", 0, L"", VARIANT_TRUE}));
}

TEST_F(MissingInternetLibraryTest, OtherOperationsWork) {
  EXPECT_EQ(Hash(L"abc", 1), L"900150983CD24FB0D6963F7D28E17F72");  // RFC 1321
}

}  // namespace
}  // namespace latchkey::test
