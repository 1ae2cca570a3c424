/* latchkey_identify. */
#ifndef LATCHKEY_BINDINGS_SQLITE_IDENTIFY_H
#define LATCHKEY_BINDINGS_SQLITE_IDENTIFY_H

#include <sqlite3ext.h>

/* The aggregate latchkey_identify(data, password): the settings that the rows' data, all under one
 * password, may have been encrypted with, as a JSON array of objects, the most probable first. NULL
 * without a row; a row with NULL does not count. */
void add_sample(sqlite3_context* context, int count, sqlite3_value** values);
void identify_samples(sqlite3_context* context);

#endif
