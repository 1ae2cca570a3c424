/* latchkey_encrypt, latchkey_decrypt, latchkey_try_decrypt. */
#include <postgres.h>

#include <fmgr.h>
#include <latchkey.h>
#include <miscadmin.h>
#include <utils/memutils.h>

#include "bindings/postgresql/errors.h"
#include "bindings/postgresql/key_cache.h"

/* A longer value is processed in pieces; the query can be cancelled between two of them. */
enum { PIECE = 1 << 20 };

typedef struct message {
  const uint8_t* input;
  size_t input_length;
  uint8_t* output;
  size_t output_room;
  size_t output_length;
} message;

static int32_t run_whole(const latchkey_key* key, int32_t direction, message* it,
                         latchkey_failure* failure) {
  it->output_length = it->output_room;
  return (direction == LATCHKEY_ENCRYPT ? latchkey_encrypt : latchkey_decrypt)(
      key, it->input, it->input_length, it->output, &it->output_length, failure);
}

static int32_t run_stream(latchkey_stream* stream, message* it, latchkey_failure* failure) {
  int32_t status = LATCHKEY_OK;
  size_t ready = 0;
  it->output_length = 0;
  for (size_t done = 0; done < it->input_length && status == LATCHKEY_OK; done += PIECE) {
    CHECK_FOR_INTERRUPTS();
    ready = it->output_room - it->output_length;
    status = latchkey_stream_update(stream, it->input + done, Min(PIECE, it->input_length - done),
                                    it->output + it->output_length, &ready, failure);
    it->output_length += ready;
  }
  if (status != LATCHKEY_OK) return status;
  ready = it->output_room - it->output_length;
  status = latchkey_stream_finish(stream, it->output + it->output_length, &ready, failure);
  it->output_length += ready;
  return status;
}

static int32_t run_in_pieces(latchkey_key* key, int32_t direction, message* it,
                             latchkey_failure* failure) {
  latchkey_stream* stream = NULL;
  volatile int32_t status = latchkey_stream_open(key, direction, &stream, failure);
  if (status != LATCHKEY_OK) return status;
  PG_TRY();
  { status = run_stream(stream, it, failure); }
  PG_FINALLY();
  { latchkey_stream_close(stream); }
  PG_END_TRY();
  return status;
}

/* Allocates a value with room for the input and one block more. */
static bytea* make_result(size_t input_length, message* it) {
  bytea* result = NULL;
  it->output_room = input_length + 8;
  if (it->output_room > MaxAllocSize - VARHDRSZ) {
    ereport(ERROR, (errcode(ERRCODE_PROGRAM_LIMIT_EXCEEDED),
                    errmsg("the result could be longer than the 1 GB of a value")));
  }
  result = palloc(VARHDRSZ + it->output_room);
  it->output = (uint8_t*)VARDATA(result);
  return result;
}

/* With `null_on_failure`, returns NULL for data that cannot be decrypted. Raises an error for every
 * other failure. */
static Datum run(FunctionCallInfo fcinfo, int32_t direction, bool null_on_failure) {
  latchkey_failure failure = LATCHKEY_FAILURE_INIT;
  latchkey_key* const key = key_of_call(fcinfo);
  bytea* const data = PG_GETARG_BYTEA_PP(0);
  message it = {(const uint8_t*)VARDATA_ANY(data), VARSIZE_ANY_EXHDR(data), NULL, 0, 0};
  bytea* const result = make_result(it.input_length, &it);
  const int32_t status = it.input_length <= PIECE ? run_whole(key, direction, &it, &failure)
                                                  : run_in_pieces(key, direction, &it, &failure);
  PG_FREE_IF_COPY(data, 0);
  if (status == LATCHKEY_CIPHER_FAILED && null_on_failure) {
    pfree(result);
    PG_RETURN_NULL();
  }
  if (status != LATCHKEY_OK) raise_failure(status, &failure);
  SET_VARSIZE(result, VARHDRSZ + it.output_length);
  PG_RETURN_BYTEA_P(result);
}

PG_FUNCTION_INFO_V1(sql_latchkey_encrypt);
Datum sql_latchkey_encrypt(PG_FUNCTION_ARGS) { return run(fcinfo, LATCHKEY_ENCRYPT, false); }

PG_FUNCTION_INFO_V1(sql_latchkey_decrypt);
Datum sql_latchkey_decrypt(PG_FUNCTION_ARGS) { return run(fcinfo, LATCHKEY_DECRYPT, false); }

PG_FUNCTION_INFO_V1(sql_latchkey_try_decrypt);
Datum sql_latchkey_try_decrypt(PG_FUNCTION_ARGS) { return run(fcinfo, LATCHKEY_DECRYPT, true); }
