/* The key of a call in a query: derived in the first row, again when settings or password change.
 */
#ifndef LATCHKEY_BINDINGS_POSTGRESQL_KEY_CACHE_H
#define LATCHKEY_BINDINGS_POSTGRESQL_KEY_CACHE_H

#include <postgres.h>

#include <fmgr.h>
#include <latchkey.h>

/* The key for the settings in the arguments 2 to 6 (hash, cipher, provider, key bits, RC2 effective
 * bits) and the password in argument 1. It is closed, and the copy of the password wiped, with the
 * memory context of the call, which ends with the query: after an error or a cancelled query too.
 * Raises an error for settings that the library refuses. */
latchkey_key* key_of_call(FunctionCallInfo fcinfo);

#endif
