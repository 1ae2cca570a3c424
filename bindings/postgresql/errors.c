#include "bindings/postgresql/errors.h"

#include "bindings/sql/names.h"

static int sqlstate_of(int32_t status) {
  switch (status) {
    case LATCHKEY_NO_MEMORY:
      return ERRCODE_OUT_OF_MEMORY;
    case LATCHKEY_BAD_ARGUMENT:
    case LATCHKEY_BAD_HASH:
    case LATCHKEY_BAD_CIPHER:
    case LATCHKEY_NO_PROVIDER:
    case LATCHKEY_KEY_FAILED:
      return ERRCODE_INVALID_PARAMETER_VALUE;
    default:
      return ERRCODE_DATA_EXCEPTION;
  }
}

void raise_failure(int32_t status, const latchkey_failure* failure) {
  const char* const text = failure->text[0] != 0 ? failure->text : latchkey_status_text(status);
  const char* const hint = sql_hint_for(status);
  ereport(ERROR, (errcode(sqlstate_of(status)), errmsg("%s", text),
                  failure->location != 0
                      ? errdetail("Location %d, number %d.", failure->location, failure->number)
                      : 0,
                  hint != NULL ? errhint("%s", hint) : 0));
  pg_unreachable();
}
