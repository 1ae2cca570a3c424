/* The functions for messages and for finding their settings. */
#ifndef LATCHKEY_BINDINGS_SQLITE_FUNCTIONS_H
#define LATCHKEY_BINDINGS_SQLITE_FUNCTIONS_H

#include <sqlite3ext.h>

/* latchkey_encrypt, latchkey_decrypt and latchkey_try_decrypt. */
/* Arguments of each: data, password, hash, cipher, and optionally provider, key bits, RC2 effective
 * bits. If an argument is NULL, so is the result. If the password is constant in the statement, the
 * key is derived once and closed with the statement. */
enum { FEWEST_MESSAGE_ARGUMENTS = 4, MOST_MESSAGE_ARGUMENTS = 7 };

void call_encrypt(sqlite3_context* context, int count, sqlite3_value** values);
void call_decrypt(sqlite3_context* context, int count, sqlite3_value** values);
void call_try_decrypt(sqlite3_context* context, int count, sqlite3_value** values);

/* The aggregate latchkey_identify(data, password). Returns the settings that the rows' data may
 * have been encrypted with, as a JSON array of objects, the most probable first. All rows must have
 * the same password. Rows with NULL are ignored; the result is NULL if no other row exists. */
void add_sample(sqlite3_context* context, int count, sqlite3_value** values);
void identify_samples(sqlite3_context* context);

#endif
