#include "bindings/sqlite/functions.h"

#include <latchkey.h>
#include <string.h>

#include "bindings/sql/names.h"
#include "bindings/sqlite/values.h"

SQLITE_EXTENSION_INIT3

static const char kName[] = "latchkey_identify";
enum { MOST_CANDIDATES = 64 };

/* A buffer that grows by doubling. */
typedef struct buffer {
  uint8_t* data;
  size_t length;
  size_t room;
} buffer;

/* The rows so far. Initially all zeros. */
typedef struct samples {
  buffer data;
  buffer offsets; /* of int64_t: where each sample ends; the first is 0 */
  buffer password;
  size_t count;
} samples;

static bool append(buffer* to, const void* bytes, size_t length) {
  if (length > to->room - to->length) {
    const size_t room = 2 * to->length + length + 64;
    uint8_t* const data = sqlite3_realloc64(to->data, room);
    if (data == NULL) return false;
    to->data = data;
    to->room = room;
  }
  if (length > 0) memcpy(to->data + to->length, bytes, length);
  to->length += length;
  return true;
}

static bool append_offset(samples* all) {
  const int64_t end = (int64_t)all->data.length;
  return append(&all->offsets, &end, sizeof end);
}

/* The first row sets the password; later rows must have the same. Sets an error and returns false
 * otherwise. */
static bool check_password(sqlite3_context* context, samples* all, sql_bytes password) {
  if (all->count == 0) {
    if (append(&all->password, password.data, password.length)) return true;
    sqlite3_result_error_nomem(context);
    return false;
  }
  if (all->password.length == password.length &&
      (password.length == 0 || memcmp(all->password.data, password.data, password.length) == 0)) {
    return true;
  }
  sqlite3_result_error(context, "latchkey_identify: all rows need the same password", -1);
  return false;
}

void add_sample(sqlite3_context* context, int count, sqlite3_value** values) {
  samples* const all = sqlite3_aggregate_context(context, sizeof *all);
  sql_bytes data = {NULL, 0};
  sql_bytes password = {NULL, 0};
  if (any_is_null(count, values)) return;
  if (all == NULL) {
    sqlite3_result_error_nomem(context);
    return;
  }
  if (!read_bytes(context, values[0], &data) || !read_bytes(context, values[1], &password)) return;
  if (!check_password(context, all, password)) return;
  if ((all->count > 0 || append_offset(all)) && append(&all->data, data.data, data.length) &&
      append_offset(all)) {
    ++all->count;
  } else {
    sqlite3_result_error_nomem(context);
  }
}

static void write_candidate(sqlite3_str* json, const latchkey_candidate* candidate) {
  const latchkey_settings* const settings = &candidate->settings;
  sqlite3_str_appendf(json,
                      "{\"hash\":\"%s\",\"cipher\":\"%s\",\"provider\":\"%s\",\"key_bits\":%u,"
                      "\"rc2_effective_bits\":%u,\"padding\":",
                      sql_name_of(SQL_HASH, settings->hash),
                      sql_name_of(SQL_CIPHER, settings->cipher),
                      sql_name_of(SQL_PROVIDER, settings->provider), settings->key_bits,
                      settings->rc2_effective_bits);
  if (candidate->padding < 0)
    sqlite3_str_appendall(json, "null");
  else
    sqlite3_str_appendf(json, "%d", candidate->padding);
  sqlite3_str_appendf(json, ",\"probability\":%!.15g}", candidate->probability);
}

static void return_json(sqlite3_context* context, const latchkey_candidate* candidates,
                        size_t count) {
  sqlite3_str* const json = sqlite3_str_new(sqlite3_context_db_handle(context));
  char* text = NULL;
  sqlite3_str_appendchar(json, 1, '[');
  for (size_t i = 0; i < count; ++i) {
    if (i > 0) sqlite3_str_appendchar(json, 1, ',');
    write_candidate(json, &candidates[i]);
  }
  sqlite3_str_appendchar(json, 1, ']');
  text = sqlite3_str_finish(json);
  if (text == NULL)
    sqlite3_result_error_nomem(context);
  else
    sqlite3_result_text(context, text, -1, sqlite3_free);
}

static void identify(sqlite3_context* context, const samples* all) {
  const latchkey_records records = {sizeof records,    sizeof(int64_t), all->count,
                                    all->offsets.data, all->data.data,  all->data.length};
  latchkey_candidate candidates[MOST_CANDIDATES];
  size_t count = MOST_CANDIDATES;
  latchkey_failure failure = LATCHKEY_FAILURE_INIT;
  const int32_t status = latchkey_identify(&records, all->password.data, all->password.length,
                                           sizeof candidates[0], candidates, &count, &failure);
  if (status == LATCHKEY_OK)
    return_json(context, candidates, count);
  else
    set_failure(context, kName, status, &failure);
}

/* SQLite calls this after an error too. */
void identify_samples(sqlite3_context* context) {
  samples* const all = sqlite3_aggregate_context(context, 0);
  if (all == NULL) return;
  if (all->count > 0) identify(context, all);
  if (all->password.data != NULL) explicit_bzero(all->password.data, all->password.room);
  sqlite3_free(all->password.data);
  sqlite3_free(all->offsets.data);
  sqlite3_free(all->data.data);
}
