/* Arguments and errors of SQL functions. */
#ifndef LATCHKEY_BINDINGS_SQLITE_VALUES_H
#define LATCHKEY_BINDINGS_SQLITE_VALUES_H

#include <latchkey.h>
#include <sqlite3ext.h>
#include <stdbool.h>
#include <stddef.h>
#include <stdint.h>

#include "bindings/sql/names.h"

typedef struct sql_bytes {
  const uint8_t* data;
  size_t length;
} sql_bytes;

bool any_is_null(int count, sqlite3_value** values);

/* The bytes of a blob, or of a text in UTF-8; SQLite owns them. Sets the function's error and
 * returns false for another type, or if memory runs out. */
bool read_bytes(sqlite3_context* context, sqlite3_value* value, sql_bytes* bytes);

/* The number of a name, or SQL_UNKNOWN_NAME. */
int32_t number_of(sqlite3_value* value, enum sql_name_kind kind);

/* Sets the function's error for a status other than LATCHKEY_OK: the function's name, a text, and
 * location and number or the allowed names. No text contains data or an argument, because an
 * argument may be a password in the wrong place. */
void set_failure(sqlite3_context* context, const char* function, int32_t status,
                 const latchkey_failure* failure);

#endif
