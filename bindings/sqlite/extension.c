/* Registers the functions with SQLite when it loads the extension. */
#include <latchkey.h>
#include <sqlite3ext.h>

#include "bindings/sql/names.h"
#include "bindings/sqlite/functions.h"
#include "bindings/sqlite/values.h"

SQLITE_EXTENSION_INIT1

typedef struct function {
  const char* name;
  int fewest; /* number of arguments */
  int most;
  void (*call)(sqlite3_context*, int, sqlite3_value**);
  void (*step)(sqlite3_context*, int, sqlite3_value**); /* of an aggregate */
  void (*finish)(sqlite3_context*);
} function;

static void digest(sqlite3_context* context, int count, sqlite3_value** values) {
  enum { LONGEST_DIGEST = 20 };
  latchkey_failure failure = LATCHKEY_FAILURE_INIT;
  uint8_t result[LONGEST_DIGEST];
  size_t length = sizeof result;
  sql_bytes data = {NULL, 0};
  int32_t status = LATCHKEY_OK;
  if (any_is_null(count, values) || !read_bytes(context, values[0], &data)) return;
  status = latchkey_digest(number_of(values[1], SQL_HASH), data.data, data.length, result, &length,
                           &failure);
  if (status == LATCHKEY_OK)
    sqlite3_result_blob(context, result, (int)length, SQLITE_TRANSIENT);
  else
    set_failure(context, "latchkey_digest", status, &failure);
}

static const function kFunctions[] = {
    {"latchkey_encrypt", FEWEST_MESSAGE_ARGUMENTS, MOST_MESSAGE_ARGUMENTS, call_encrypt, NULL,
     NULL},
    {"latchkey_decrypt", FEWEST_MESSAGE_ARGUMENTS, MOST_MESSAGE_ARGUMENTS, call_decrypt, NULL,
     NULL},
    {"latchkey_try_decrypt", FEWEST_MESSAGE_ARGUMENTS, MOST_MESSAGE_ARGUMENTS, call_try_decrypt,
     NULL, NULL},
    {"latchkey_digest", 2, 2, digest, NULL, NULL},
    {"latchkey_identify", 2, 2, NULL, add_sample, identify_samples},
};

static int register_function(sqlite3* database, const function* it) {
  const int flags = SQLITE_UTF8 | SQLITE_DETERMINISTIC | SQLITE_INNOCUOUS;
  int result = SQLITE_OK;
  for (int count = it->fewest; count <= it->most && result == SQLITE_OK; ++count) {
    result = sqlite3_create_function_v2(database, it->name, count, flags, NULL, it->call, it->step,
                                        it->finish, NULL);
  }
  return result;
}

static int register_all(sqlite3* database) {
  int result = SQLITE_OK;
  for (size_t i = 0; i < sizeof kFunctions / sizeof kFunctions[0] && result == SQLITE_OK; ++i) {
    result = register_function(database, &kFunctions[i]);
  }
  return result;
}

static void remove_all(sqlite3* database) {
  for (size_t i = 0; i < sizeof kFunctions / sizeof kFunctions[0]; ++i) {
    const function* const it = &kFunctions[i];
    const function removed = {it->name, it->fewest, it->most, NULL, NULL, NULL};
    (void)register_function(database, &removed);
  }
}

/* SQLite derives this name from the file name, mod_latchkey.so. */
int sqlite3_modlatchkey_init(sqlite3* database, char** message, const sqlite3_api_routines* api);

int sqlite3_modlatchkey_init(sqlite3* database, char** message, const sqlite3_api_routines* api) {
  int result = SQLITE_OK;
  SQLITE_EXTENSION_INIT2(api);
  (void)message;
  result = register_all(database);
  /* SQLite unloads an extension that fails, but keeps the functions that it has registered. */
  if (result != SQLITE_OK) remove_all(database);
  return result;
}
