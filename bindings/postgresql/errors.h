/* Failures of the library as errors of PostgreSQL. */
#ifndef LATCHKEY_BINDINGS_POSTGRESQL_ERRORS_H
#define LATCHKEY_BINDINGS_POSTGRESQL_ERRORS_H

#include <postgres.h>

#include <latchkey.h>

/* Raises the error for a status other than LATCHKEY_OK: SQLSTATE 53200 if memory runs out, 22023
 * for invalid settings or without a provider, otherwise 22000. The detail has location and number.
 * No text contains data or an argument, because an argument may be a password in the wrong place.
 */
pg_attribute_noreturn() void raise_failure(int32_t status, const latchkey_failure* failure);

#endif
