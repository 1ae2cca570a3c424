#include "bindings/postgresql/key_cache.h"

#include <string.h>
#include <utils/memutils.h>

#include "bindings/postgresql/errors.h"
#include "bindings/sql/names.h"

enum argument { PASSWORD = 1, HASH, CIPHER, PROVIDER, KEY_BITS, RC2_EFFECTIVE_BITS };

/* Kept in fn_extra. */
typedef struct key_cache {
  MemoryContextCallback at_end;
  latchkey_settings settings;
  latchkey_key* key;
  uint8_t* password;
  size_t password_length;
  size_t password_room;
} key_cache;

static int32_t number_of(FunctionCallInfo fcinfo, int argument, enum sql_name_kind kind) {
  text* const name = PG_GETARG_TEXT_PP(argument);
  const int32_t number = sql_number_of(kind, VARDATA_ANY(name), VARSIZE_ANY_EXHDR(name));
  PG_FREE_IF_COPY(name, argument);
  return number;
}

static latchkey_settings settings_of(FunctionCallInfo fcinfo) {
  latchkey_settings settings = LATCHKEY_SETTINGS_INIT;
  settings.hash = number_of(fcinfo, HASH, SQL_HASH);
  settings.cipher = number_of(fcinfo, CIPHER, SQL_CIPHER);
  settings.provider = number_of(fcinfo, PROVIDER, SQL_PROVIDER);
  settings.key_bits = PG_GETARG_UINT32(KEY_BITS);
  settings.rc2_effective_bits = PG_GETARG_UINT32(RC2_EFFECTIVE_BITS);
  return settings;
}

static void forget(key_cache* cache) {
  latchkey_key_close(cache->key);
  cache->key = NULL;
  if (cache->password != NULL) explicit_bzero(cache->password, cache->password_room);
}

static void forget_at_end(void* cache) { forget(cache); }

static key_cache* cache_of(FmgrInfo* function) {
  key_cache* cache = function->fn_extra;
  if (cache == NULL) {
    cache = MemoryContextAllocZero(function->fn_mcxt, sizeof *cache);
    cache->at_end.func = forget_at_end;
    cache->at_end.arg = cache;
    MemoryContextRegisterResetCallback(function->fn_mcxt, &cache->at_end);
    function->fn_extra = cache;
  }
  return cache;
}

static bool is_for(const key_cache* cache, const latchkey_settings* settings,
                   const uint8_t* password, size_t length) {
  return cache->key != NULL && memcmp(&cache->settings, settings, sizeof *settings) == 0 &&
         cache->password_length == length &&
         (length == 0 || memcmp(cache->password, password, length) == 0);
}

static void make_password_room(key_cache* cache, MemoryContext context, size_t length) {
  if (length <= cache->password_room) return;
  if (cache->password != NULL) pfree(cache->password);
  cache->password = NULL;
  cache->password_room = 0;
  cache->password = MemoryContextAlloc(context, length);
  cache->password_room = length;
}

/* Nothing between opening the key and storing it in the cache can raise an error. */
static int32_t derive(key_cache* cache, const latchkey_settings* settings, const uint8_t* password,
                      size_t length, latchkey_failure* failure) {
  const int32_t status = latchkey_key_open(settings, password, length, &cache->key, failure);
  if (status != LATCHKEY_OK) return status;
  cache->settings = *settings;
  cache->password_length = length;
  if (length > 0) memcpy(cache->password, password, length);
  return status;
}

latchkey_key* key_of_call(FunctionCallInfo fcinfo) {
  key_cache* const cache = cache_of(fcinfo->flinfo);
  const latchkey_settings settings = settings_of(fcinfo);
  bytea* const password = PG_GETARG_BYTEA_PP(PASSWORD);
  const uint8_t* const bytes = (const uint8_t*)VARDATA_ANY(password);
  const size_t length = VARSIZE_ANY_EXHDR(password);
  latchkey_failure failure = LATCHKEY_FAILURE_INIT;
  int32_t status = LATCHKEY_OK;
  if (!is_for(cache, &settings, bytes, length)) {
    forget(cache);
    make_password_room(cache, fcinfo->flinfo->fn_mcxt, length);
    status = derive(cache, &settings, bytes, length, &failure);
  }
  if ((Pointer)password != PG_GETARG_POINTER(PASSWORD)) { /* a decompressed copy */
    explicit_bzero(password, VARSIZE_ANY(password));
    pfree(password);
  }
  if (status != LATCHKEY_OK) raise_failure(status, &failure);
  return cache->key;
}
