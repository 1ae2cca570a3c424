#include <latchkey/cls_crypto_api.h>

bool Use_cls_crypto_api() {
  const latchkey::clsCryptoAPI api;
  return api.ConvertStringToHex(u"JK") == u"4A4B";
}
