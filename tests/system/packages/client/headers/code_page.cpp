#include <latchkey/code_page.h>

bool Use_code_page() { return latchkey::SetCodePage(1) == latchkey::CodePageChoice::Unknown; }
