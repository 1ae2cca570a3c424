/* latchkey_identify. */
#include <postgres.h>

#include <catalog/pg_type.h>
#include <fmgr.h>
#include <funcapi.h>
#include <latchkey.h>
#include <utils/array.h>
#include <utils/builtins.h>

#include "bindings/postgresql/errors.h"
#include "bindings/sql/names.h"

/* Identifying cannot be cancelled, so the length of the samples is limited. */
enum { LONGEST_SAMPLES = 16 << 20, MOST_CANDIDATES = 64, COLUMNS = 7 };

PG_MODULE_MAGIC;

typedef struct samples {
  int64_t* offsets;
  uint8_t* data;
  size_t count;
  size_t length;
} samples;

static void add_sample(samples* all, Datum value) {
  bytea* const sample = DatumGetByteaPP(value);
  const size_t length = VARSIZE_ANY_EXHDR(sample);
  if (length > LONGEST_SAMPLES - all->length) {
    ereport(ERROR, (errcode(ERRCODE_PROGRAM_LIMIT_EXCEEDED),
                    errmsg("the samples are longer than %d MB together", LONGEST_SAMPLES >> 20)));
  }
  all->data =
      all->data == NULL ? palloc(length + 1) : repalloc(all->data, all->length + length + 1);
  memcpy(all->data + all->length, VARDATA_ANY(sample), length);
  all->length += length;
  all->offsets[++all->count] = (int64_t)all->length;
  if ((Pointer)sample != DatumGetPointer(value)) pfree(sample);
}

static samples collect(Datum first, ArrayType* more) {
  samples all = {NULL, NULL, 0, 0};
  Datum* values = NULL;
  bool* nulls = NULL;
  int count = 0;
  deconstruct_array(more, BYTEAOID, -1, false, TYPALIGN_INT, &values, &nulls, &count);
  all.offsets = palloc0(((size_t)count + 2) * sizeof *all.offsets);
  add_sample(&all, first);
  for (int i = 0; i < count; ++i) {
    if (!nulls[i]) add_sample(&all, values[i]);
  }
  return all;
}

static void put_candidate(ReturnSetInfo* results, const latchkey_candidate* candidate) {
  const latchkey_settings* const settings = &candidate->settings;
  Datum values[COLUMNS] = {
      CStringGetTextDatum(sql_name_of(SQL_HASH, settings->hash)),
      CStringGetTextDatum(sql_name_of(SQL_CIPHER, settings->cipher)),
      CStringGetTextDatum(sql_name_of(SQL_PROVIDER, settings->provider)),
      UInt32GetDatum(settings->key_bits),
      UInt32GetDatum(settings->rc2_effective_bits),
      Int32GetDatum(candidate->padding),
      Float8GetDatum(candidate->probability),
  };
  bool nulls[COLUMNS] = {[5] = candidate->padding < 0};
  tuplestore_putvalues(results->setResult, results->setDesc, values, nulls);
}

PG_FUNCTION_INFO_V1(sql_latchkey_identify);
Datum sql_latchkey_identify(PG_FUNCTION_ARGS) {
  const samples all = collect(PG_GETARG_DATUM(0), PG_GETARG_ARRAYTYPE_P(2));
  const latchkey_records records = {sizeof records, 8,        all.count,
                                    all.offsets,    all.data, all.length};
  bytea* const password = PG_GETARG_BYTEA_PP(1);
  latchkey_candidate candidates[MOST_CANDIDATES];
  size_t count = MOST_CANDIDATES;
  latchkey_failure failure = LATCHKEY_FAILURE_INIT;
  const int32_t status = latchkey_identify(&records, (const uint8_t*)VARDATA_ANY(password),
                                           VARSIZE_ANY_EXHDR(password), sizeof candidates[0],
                                           candidates, &count, &failure);
  if ((Pointer)password != PG_GETARG_POINTER(1)) explicit_bzero(password, VARSIZE_ANY(password));
  if (status != LATCHKEY_OK) raise_failure(status, &failure);
  InitMaterializedSRF(fcinfo, 0);
  for (size_t i = 0; i < count; ++i) {
    put_candidate((ReturnSetInfo*)fcinfo->resultinfo, &candidates[i]);
  }
  return (Datum)0;
}
