#include "bindings/sqlite/functions.h"

#include <latchkey.h>
#include <string.h>

#include "bindings/sql/names.h"
#include "bindings/sqlite/values.h"

SQLITE_EXTENSION_INIT3

enum argument { DATA, PASSWORD, HASH, CIPHER, PROVIDER, KEY_BITS, RC2_EFFECTIVE_BITS };

typedef struct operation {
  const char* name;
  int32_t direction;
  bool null_on_failure;
} operation;

/* A key that SQLite keeps for a constant password. */
typedef struct held_key {
  latchkey_settings settings;
  latchkey_key* key;
} held_key;

static void release(void* held) {
  latchkey_key_close(((held_key*)held)->key);
  sqlite3_free(held);
}

/* Numbers that do not fit become UINT32_MAX, which the library refuses. */
static uint32_t bits_of(sqlite3_value* value) {
  const sqlite3_int64 bits = sqlite3_value_int64(value);
  return bits < 0 || bits > UINT32_MAX ? UINT32_MAX : (uint32_t)bits;
}

static latchkey_settings settings_of(int count, sqlite3_value** values) {
  latchkey_settings settings = LATCHKEY_SETTINGS_INIT;
  settings.hash = number_of(values[HASH], SQL_HASH);
  settings.cipher = number_of(values[CIPHER], SQL_CIPHER);
  if (count > PROVIDER) settings.provider = number_of(values[PROVIDER], SQL_PROVIDER);
  if (count > KEY_BITS) settings.key_bits = bits_of(values[KEY_BITS]);
  if (count > RC2_EFFECTIVE_BITS) settings.rc2_effective_bits = bits_of(values[RC2_EFFECTIVE_BITS]);
  return settings;
}

static held_key* derive(sqlite3_context* context, const operation* it,
                        const latchkey_settings* settings, sqlite3_value* password) {
  latchkey_failure failure = LATCHKEY_FAILURE_INIT;
  sql_bytes bytes = {NULL, 0};
  held_key* held = NULL;
  int32_t status = LATCHKEY_NO_MEMORY;
  if (!read_bytes(context, password, &bytes)) return NULL;
  held = sqlite3_malloc64(sizeof *held);
  if (held != NULL) {
    held->settings = *settings;
    status = latchkey_key_open(settings, bytes.data, bytes.length, &held->key, &failure);
  }
  if (status == LATCHKEY_OK) return held;
  sqlite3_free(held);
  set_failure(context, it->name, status, &failure);
  return NULL;
}

static void run(sqlite3_context* context, const operation* it, const latchkey_key* key,
                sqlite3_value* value) {
  latchkey_failure failure = LATCHKEY_FAILURE_INIT;
  sql_bytes input = {NULL, 0};
  uint8_t* output = NULL;
  size_t length = 0;
  int32_t status = LATCHKEY_NO_MEMORY;
  if (!read_bytes(context, value, &input)) return;
  length = input.length + 8; /* enough for the padding */
  output = sqlite3_malloc64(length);
  if (output != NULL) {
    status = (it->direction == LATCHKEY_ENCRYPT ? latchkey_encrypt : latchkey_decrypt)(
        key, input.data, input.length, output, &length, &failure);
  }
  if (status == LATCHKEY_OK) {
    sqlite3_result_blob64(context, output, length, sqlite3_free);
    return;
  }
  sqlite3_free(output);
  if (status == LATCHKEY_CIPHER_FAILED && it->null_on_failure) return;
  set_failure(context, it->name, status, &failure);
}

static void call(sqlite3_context* context, const operation* it, int count, sqlite3_value** values) {
  latchkey_settings settings = LATCHKEY_SETTINGS_INIT;
  held_key* held = sqlite3_get_auxdata(context, PASSWORD);
  bool is_new = false;
  if (any_is_null(count, values)) return;
  settings = settings_of(count, values);
  is_new = held == NULL || memcmp(&held->settings, &settings, sizeof settings) != 0;
  if (is_new) held = derive(context, it, &settings, values[PASSWORD]);
  if (held == NULL) return;
  run(context, it, held->key, values[DATA]);
  /* Must be last: if memory runs out, SQLite releases the key at once. */
  if (is_new) sqlite3_set_auxdata(context, PASSWORD, held, release);
}

void call_encrypt(sqlite3_context* context, int count, sqlite3_value** values) {
  static const operation kEncrypt = {"latchkey_encrypt", LATCHKEY_ENCRYPT, false};
  call(context, &kEncrypt, count, values);
}

void call_decrypt(sqlite3_context* context, int count, sqlite3_value** values) {
  static const operation kDecrypt = {"latchkey_decrypt", LATCHKEY_DECRYPT, false};
  call(context, &kDecrypt, count, values);
}

void call_try_decrypt(sqlite3_context* context, int count, sqlite3_value** values) {
  static const operation kTryDecrypt = {"latchkey_try_decrypt", LATCHKEY_DECRYPT, true};
  call(context, &kTryDecrypt, count, values);
}
