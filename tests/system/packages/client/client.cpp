// A minimal client of the library.
#include <latchkey/cls_crypto_api.h>
#include <latchkey/cls_main.h>

int main() {
  const latchkey::clsMain errorRecord;
  latchkey::clsCryptoAPI api;
  return api.CreateHash(u"abc", 1, true) == u"900150983CD24FB0D6963F7D28E17F72" ? 0 : 1;
}
