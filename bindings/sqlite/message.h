/* latchkey_encrypt, latchkey_decrypt, latchkey_try_decrypt. */
#ifndef LATCHKEY_BINDINGS_SQLITE_MESSAGE_H
#define LATCHKEY_BINDINGS_SQLITE_MESSAGE_H

#include <sqlite3ext.h>

/* Arguments of each: data, password, hash, cipher, and optionally provider, key bits, RC2 effective
 * bits. If an argument is NULL, so is the result. If the password is constant in the statement, the
 * key is derived once and closed with the statement. */
enum { FEWEST_MESSAGE_ARGUMENTS = 4, MOST_MESSAGE_ARGUMENTS = 7 };

void call_encrypt(sqlite3_context* context, int count, sqlite3_value** values);
void call_decrypt(sqlite3_context* context, int count, sqlite3_value** values);
void call_try_decrypt(sqlite3_context* context, int count, sqlite3_value** values);

#endif
