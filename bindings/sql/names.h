/* The names of algorithms and providers in SQL, such as md5, 3des-112, enhanced. */
#ifndef LATCHKEY_BINDINGS_SQL_NAMES_H
#define LATCHKEY_BINDINGS_SQL_NAMES_H

#include <stddef.h>
#include <stdint.h>

enum sql_name_kind { SQL_HASH, SQL_CIPHER, SQL_PROVIDER, SQL_NAME_KINDS };

/* The number of a name, in upper or lower case, as in latchkey.h; SQL_UNKNOWN_NAME for other names.
 * The library refuses that number for every kind. */
enum { SQL_UNKNOWN_NAME = -1 };
int32_t sql_number_of(enum sql_name_kind kind, const char* name, size_t length);

/* The name of a number from latchkey.h. */
const char* sql_name_of(enum sql_name_kind kind, int32_t number);

/* A sentence with the allowed names, if a wrong name can cause the status; otherwise NULL. */
const char* sql_hint_for(int32_t status);

#endif
