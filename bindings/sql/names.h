/* The names that SQL has for algorithms and providers: md5, 3des-112, enhanced. */
#ifndef LATCHKEY_BINDINGS_SQL_NAMES_H
#define LATCHKEY_BINDINGS_SQL_NAMES_H

#include <stddef.h>
#include <stdint.h>

enum sql_name_kind { SQL_HASH, SQL_CIPHER, SQL_PROVIDER, SQL_NAME_KINDS };

/* The number in latchkey.h of a name, in upper or lower case, or SQL_UNKNOWN_NAME, which the
 * library refuses for every kind. */
enum { SQL_UNKNOWN_NAME = -1 };
int32_t sql_number_of(enum sql_name_kind kind, const char* name, size_t length);

/* The name of a number that latchkey.h has. */
const char* sql_name_of(enum sql_name_kind kind, int32_t number);

/* For a status that a wrong name causes, the names that are allowed, as a sentence; otherwise NULL.
 */
const char* sql_hint_for(int32_t status);

#endif
