#include "bindings/sql/names.h"

#include <latchkey.h>
#include <string.h>
#include <strings.h>

struct name {
  const char* text;
  int32_t number;
};

static const struct name kHashes[] = {{"md5", LATCHKEY_MD5},
                                      {"md4", LATCHKEY_MD4},
                                      {"md2", LATCHKEY_MD2},
                                      {"sha1", LATCHKEY_SHA1},
                                      {0}};

static const struct name kCiphers[] = {{"rc4", LATCHKEY_RC4},           {"rc2", LATCHKEY_RC2},
                                       {"des", LATCHKEY_DES},           {"3des", LATCHKEY_3DES},
                                       {"3des-112", LATCHKEY_3DES_112}, {0}};

static const struct name kProviders[] = {
    {"any", LATCHKEY_ANY_PROVIDER}, {"base", LATCHKEY_BASE}, {"enhanced", LATCHKEY_ENHANCED}, {0}};

static const struct name* const kNames[SQL_NAME_KINDS] = {kHashes, kCiphers, kProviders};

int32_t sql_number_of(enum sql_name_kind kind, const char* name, size_t length) {
  for (const struct name* each = kNames[kind]; each->text != NULL; ++each) {
    if (strlen(each->text) == length && strncasecmp(each->text, name, length) == 0) {
      return each->number;
    }
  }
  return SQL_UNKNOWN_NAME;
}

const char* sql_name_of(enum sql_name_kind kind, int32_t number) {
  const struct name* each = kNames[kind];
  while (each->text != NULL && each->number != number) ++each;
  return each->text;
}

const char* sql_hint_for(int32_t status) {
  switch (status) {
    case LATCHKEY_BAD_HASH:
      return "The hash is one of md5, md4, md2, sha1.";
    case LATCHKEY_BAD_CIPHER:
      return "The cipher is one of rc4, rc2, des, 3des, 3des-112; 3des and 3des-112 need the "
             "enhanced provider.";
    case LATCHKEY_BAD_ARGUMENT:
      return "The provider is one of any, base, enhanced.";
    default:
      return NULL;
  }
}
