/* The key of a function call in a query. It is derived for the first row, and derived again when
 * the settings or the password change. */
#ifndef LATCHKEY_BINDINGS_POSTGRESQL_KEY_CACHE_H
#define LATCHKEY_BINDINGS_POSTGRESQL_KEY_CACHE_H

#include <postgres.h>

#include <fmgr.h>
#include <latchkey.h>

/* The key for the settings in arguments 2 to 6 (hash, cipher, provider, key bits, RC2 effective
 * bits) and the password in argument 1. When the query ends, also after an error or a cancel,
 * the memory context of the call is reset, which closes the key and wipes the copy of the password.
 * Raises an error for settings that the library refuses. */
latchkey_key* key_of_call(FunctionCallInfo fcinfo);

#endif
