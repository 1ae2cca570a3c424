/* latchkey_identify. */
#ifndef LATCHKEY_BINDINGS_SQLITE_IDENTIFY_H
#define LATCHKEY_BINDINGS_SQLITE_IDENTIFY_H

#include <sqlite3ext.h>

/* The aggregate latchkey_identify(data, password). Returns the settings that the rows' data may
 * have been encrypted with, as a JSON array of objects, the most probable first. All rows must have
 * the same password. Rows with NULL are ignored; the result is NULL if no other row exists. */
void add_sample(sqlite3_context* context, int count, sqlite3_value** values);
void identify_samples(sqlite3_context* context);

#endif
