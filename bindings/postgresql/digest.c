/* latchkey_digest. */
#include <postgres.h>

#include <fmgr.h>
#include <latchkey.h>
#include <miscadmin.h>

#include "bindings/postgresql/errors.h"
#include "bindings/sql/names.h"

enum { PIECE = 1 << 20, LONGEST_DIGEST = 20 };

static int32_t add_pieces(latchkey_hash* object, const uint8_t* bytes, size_t length,
                          latchkey_failure* failure) {
  int32_t status = LATCHKEY_OK;
  for (size_t done = 0; done < length && status == LATCHKEY_OK; done += PIECE) {
    CHECK_FOR_INTERRUPTS();
    status = latchkey_hash_update(object, bytes + done, Min(PIECE, length - done), failure);
  }
  return status;
}

/* Values are hashed in pieces; a query can be cancelled between two of them. */
static int32_t digest_in_pieces(int32_t hash, const bytea* data, uint8_t* digest, size_t* length,
                                latchkey_failure* failure) {
  latchkey_hash* object = NULL;
  volatile int32_t status = latchkey_hash_open(hash, &object, failure);
  if (status != LATCHKEY_OK) return status;
  PG_TRY();
  {
    status =
        add_pieces(object, (const uint8_t*)VARDATA_ANY(data), VARSIZE_ANY_EXHDR(data), failure);
    if (status == LATCHKEY_OK) status = latchkey_hash_finish(object, digest, length, failure);
  }
  PG_FINALLY();
  { latchkey_hash_close(object); }
  PG_END_TRY();
  return status;
}

static int32_t digest_of(int32_t hash, const bytea* data, uint8_t* digest, size_t* length,
                         latchkey_failure* failure) {
  const size_t data_length = VARSIZE_ANY_EXHDR(data);
  if (data_length > PIECE) return digest_in_pieces(hash, data, digest, length, failure);
  return latchkey_digest(hash, (const uint8_t*)VARDATA_ANY(data), data_length, digest, length,
                         failure);
}

PG_FUNCTION_INFO_V1(sql_latchkey_digest);
Datum sql_latchkey_digest(PG_FUNCTION_ARGS) {
  bytea* const data = PG_GETARG_BYTEA_PP(0);
  text* const name = PG_GETARG_TEXT_PP(1);
  const int32_t hash = sql_number_of(SQL_HASH, VARDATA_ANY(name), VARSIZE_ANY_EXHDR(name));
  bytea* const result = palloc(VARHDRSZ + LONGEST_DIGEST);
  latchkey_failure failure = LATCHKEY_FAILURE_INIT;
  size_t length = LONGEST_DIGEST;
  const int32_t status = digest_of(hash, data, (uint8_t*)VARDATA(result), &length, &failure);
  PG_FREE_IF_COPY(data, 0);
  PG_FREE_IF_COPY(name, 1);
  if (status != LATCHKEY_OK) raise_failure(status, &failure);
  SET_VARSIZE(result, VARHDRSZ + length);
  PG_RETURN_BYTEA_P(result);
}
