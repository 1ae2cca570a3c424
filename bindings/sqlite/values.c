#include "bindings/sqlite/values.h"

#include "bindings/sql/names.h"

SQLITE_EXTENSION_INIT3

bool any_is_null(int count, sqlite3_value** values) {
  int i = 0;
  while (i < count && sqlite3_value_type(values[i]) != SQLITE_NULL) ++i;
  return i < count;
}

bool read_bytes(sqlite3_context* context, sqlite3_value* value, sql_bytes* bytes) {
  switch (sqlite3_value_type(value)) {
    case SQLITE_BLOB:
      bytes->data = sqlite3_value_blob(value);
      break;
    case SQLITE_TEXT:
      bytes->data = sqlite3_value_text(value);
      break;
    default:
      sqlite3_result_error(context, "data and password are blobs or texts", -1);
      return false;
  }
  bytes->length = (size_t)sqlite3_value_bytes(value);
  if (bytes->data == NULL && bytes->length > 0) {
    sqlite3_result_error_nomem(context);
    return false;
  }
  return true;
}

int32_t number_of(sqlite3_value* value, enum sql_name_kind kind) {
  const char* const name = (const char*)sqlite3_value_text(value);
  return name == NULL ? SQL_UNKNOWN_NAME
                      : sql_number_of(kind, name, (size_t)sqlite3_value_bytes(value));
}

static char* describe(const char* function, int32_t status, const latchkey_failure* failure) {
  sqlite3_str* const text = sqlite3_str_new(NULL);
  const char* const hint = sql_hint_for(status);
  sqlite3_str_appendf(text, "%s: %s", function,
                      failure->text[0] != 0 ? failure->text : latchkey_status_text(status));
  if (failure->location != 0) {
    sqlite3_str_appendf(text, " (location %d, number %d)", failure->location, failure->number);
  }
  if (hint != NULL) sqlite3_str_appendf(text, ". %s", hint);
  return sqlite3_str_finish(text);
}

void set_failure(sqlite3_context* context, const char* function, int32_t status,
                 const latchkey_failure* failure) {
  char* const text = status == LATCHKEY_NO_MEMORY ? NULL : describe(function, status, failure);
  if (text == NULL) {
    sqlite3_result_error_nomem(context);
    return;
  }
  sqlite3_result_error(context, text, -1);
  sqlite3_free(text);
}
