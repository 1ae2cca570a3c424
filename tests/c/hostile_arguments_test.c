/* Whatever a caller hands over, the C interface answers with a status. */
#include "check.h"
#include "latchkey.h"

static latchkey_thread* thread = NULL;
static latchkey_crypto* crypto = NULL;
static latchkey_timer* timer = NULL;
static uint8_t buffer[64];
static size_t length = 0;

static latchkey_key good_key(void) {
  const latchkey_key key = {0, LATCHKEY_MD5, LATCHKEY_DES, 0, (const uint8_t*)"secret", 6};
  return key;
}

static int encrypt(const latchkey_key* key) {
  length = sizeof buffer;
  return latchkey_encrypt(crypto, key, (const uint8_t*)"attack", 6, buffer, &length);
}

static void every_status_has_a_text_of_its_own(void) {
  for (int status = 0; status < LATCHKEY_STATUS_COUNT; ++status) {
    CHECK(strlen(latchkey_status_text(status)) > 0);
    for (int other = -1; other < status; ++other) {
      CHECK(strcmp(latchkey_status_text(status), latchkey_status_text(other)) != 0);
    }
  }
  CHECK(strcmp(latchkey_status_text(LATCHKEY_STATUS_COUNT), latchkey_status_text(-1)) == 0);
  CHECK(strcmp(latchkey_status_text(INT32_MAX), latchkey_status_text(INT32_MIN)) == 0);
}

/* Asks every function that takes a handle. */
static void check_handle_is_refused(void* handle) {
  const latchkey_key key = good_key();
  latchkey_error error;
  int32_t number = 7;
  const size_t room = sizeof buffer;
#define CHECK_REFUSED(call)                  \
  do {                                       \
    length = room;                           \
    memset(buffer, 0x55, room);              \
    CHECK_NUMBER(call, LATCHKEY_BAD_HANDLE); \
    CHECK_NUMBER(buffer[0], 0x55);           \
  } while (0)
#define CHECK_REFUSED_OUTPUT(call) \
  do {                             \
    CHECK_REFUSED(call);           \
    CHECK_NUMBER(length, 0);       \
  } while (0)
  if (handle != thread) {
    latchkey_thread* const wrong = handle;
    CHECK_REFUSED(latchkey_error_read(wrong, &error));
    CHECK_NUMBER(error.error_type, 0);
    CHECK_REFUSED_OUTPUT(latchkey_error_app_description(wrong, (char*)buffer, &length));
    CHECK_REFUSED_OUTPUT(latchkey_error_rt_description(wrong, (char*)buffer, &length));
    CHECK_REFUSED(latchkey_connection_exists(wrong, &number));
    CHECK_NUMBER(number, 0);
    if (wrong != NULL) CHECK_REFUSED(latchkey_thread_close(wrong));
  }
  if (handle != crypto) {
    latchkey_crypto* const wrong = handle;
    CHECK_REFUSED_OUTPUT(latchkey_encrypt(wrong, &key, buffer, 0, buffer, &length));
    CHECK_REFUSED_OUTPUT(latchkey_decrypt(wrong, &key, buffer, 0, buffer, &length));
    CHECK_REFUSED_OUTPUT(latchkey_hash(wrong, LATCHKEY_MD5, NULL, 0, buffer, &length));
    CHECK_REFUSED_OUTPUT(latchkey_create_random(wrong, 0, 1, buffer, &length));
    CHECK_REFUSED_OUTPUT(latchkey_create_salt(wrong, 0, 1, buffer, &length));
    if (wrong != NULL) CHECK_REFUSED(latchkey_crypto_close(wrong));
    CHECK_NUMBER(latchkey_random_bytes(wrong, buffer, 1), LATCHKEY_BAD_HANDLE);
  }
  if (handle != timer) {
    latchkey_timer* const wrong = handle;
    number = 7;
    CHECK_REFUSED(latchkey_timer_start(wrong));
    CHECK_REFUSED(latchkey_timer_elapsed(wrong, &number));
    CHECK_NUMBER(number, 0);
    if (wrong != NULL) CHECK_REFUSED(latchkey_timer_close(wrong));
  }
}

static void wrong_handles_are_refused(void) {
  latchkey_crypto* closed_crypto = NULL;
  latchkey_timer* closed_timer = NULL;
  int on_the_stack = 0;
  CHECK_NUMBER(latchkey_crypto_open(&closed_crypto), LATCHKEY_OK);
  CHECK_NUMBER(latchkey_crypto_close(closed_crypto), LATCHKEY_OK);
  CHECK_NUMBER(latchkey_timer_open(&closed_timer), LATCHKEY_OK);
  CHECK_NUMBER(latchkey_timer_close(closed_timer), LATCHKEY_OK);
  void* const handles[] = {NULL,
                           thread,
                           crypto,
                           timer,
                           closed_crypto,
                           closed_timer,
                           &on_the_stack,
                           (void*)(uintptr_t)1,
                           (void*)~(uintptr_t)0};
  for (size_t i = 0; i < sizeof handles / sizeof handles[0]; ++i) {
    check_handle_is_refused(handles[i]);
  }
}

static void closing_nothing_does_nothing(void) {
  CHECK_NUMBER(latchkey_thread_close(NULL), LATCHKEY_OK);
  CHECK_NUMBER(latchkey_crypto_close(NULL), LATCHKEY_OK);
  CHECK_NUMBER(latchkey_timer_close(NULL), LATCHKEY_OK);
}

static void missing_pointers_are_refused(void) {
  latchkey_key key = good_key();
  CHECK_NUMBER(latchkey_thread_open(NULL), LATCHKEY_BAD_ARGUMENT);
  CHECK_NUMBER(latchkey_crypto_open(NULL), LATCHKEY_BAD_ARGUMENT);
  CHECK_NUMBER(latchkey_timer_open(NULL), LATCHKEY_BAD_ARGUMENT);
  CHECK_NUMBER(latchkey_error_read(thread, NULL), LATCHKEY_BAD_ARGUMENT);
  CHECK_NUMBER(latchkey_connection_exists(thread, NULL), LATCHKEY_BAD_ARGUMENT);
  CHECK_NUMBER(latchkey_timer_elapsed(timer, NULL), LATCHKEY_BAD_ARGUMENT);
  CHECK_NUMBER(latchkey_error_app_description(thread, (char*)buffer, NULL), LATCHKEY_BAD_ARGUMENT);
  CHECK_NUMBER(latchkey_random_bytes(crypto, NULL, 1), LATCHKEY_BAD_ARGUMENT);
  CHECK_NUMBER(encrypt(NULL), LATCHKEY_BAD_ARGUMENT);
  CHECK_NUMBER(length, 0);

  length = 5;
  CHECK_NUMBER(latchkey_encrypt(crypto, &key, buffer, 1, NULL, &length), LATCHKEY_BAD_ARGUMENT);
  CHECK_NUMBER(length, 0);
  length = sizeof buffer;
  CHECK_NUMBER(latchkey_encrypt(crypto, &key, NULL, 1, buffer, &length), LATCHKEY_BAD_ARGUMENT);
  CHECK_NUMBER(latchkey_encrypt(crypto, &key, buffer, 1, buffer, NULL), LATCHKEY_BAD_ARGUMENT);
  length = sizeof buffer;
  CHECK_NUMBER(latchkey_hash(crypto, LATCHKEY_MD5, NULL, 1, buffer, &length),
               LATCHKEY_BAD_ARGUMENT);
  length = sizeof buffer;
  CHECK_NUMBER(latchkey_hex_encode(NULL, 1, (char*)buffer, &length), LATCHKEY_BAD_ARGUMENT);
  length = sizeof buffer;
  CHECK_NUMBER(latchkey_hex_decode(NULL, 2, buffer, &length), LATCHKEY_BAD_ARGUMENT);
  key.password = NULL;
  CHECK_NUMBER(encrypt(&key), LATCHKEY_BAD_ARGUMENT);
}

static void unknown_flags_are_refused(void) {
  for (uint32_t flag = 4; flag != 0; flag <<= 1) {
    latchkey_key key = good_key();
    key.flags = flag;
    CHECK_NUMBER(encrypt(&key), LATCHKEY_BAD_FLAGS);
    length = sizeof buffer;
    CHECK_NUMBER(latchkey_create_random(crypto, flag, 1, buffer, &length), LATCHKEY_BAD_FLAGS);
    CHECK_NUMBER(latchkey_create_salt(crypto, flag, 1, buffer, &length), LATCHKEY_BAD_FLAGS);
    CHECK_NUMBER(latchkey_create_salt(crypto, flag >> 1, 1, buffer, &length), LATCHKEY_BAD_FLAGS);
  }
}

static void two_passwords_are_refused(void) {
  latchkey_key key = good_key();
  key.flags = LATCHKEY_DEFAULT_PASSWORD;
  CHECK_NUMBER(encrypt(&key), LATCHKEY_BAD_ARGUMENT);
}

static void outputs_that_overlap_inputs_are_refused(void) {
  latchkey_key key = good_key();
  memset(buffer, 'x', sizeof buffer);
  length = 16;
  CHECK_NUMBER(latchkey_encrypt(crypto, &key, buffer, 6, buffer, &length), LATCHKEY_BAD_ARGUMENT);
  length = 16;
  CHECK_NUMBER(latchkey_encrypt(crypto, &key, buffer + 15, 6, buffer, &length),
               LATCHKEY_BAD_ARGUMENT);
  length = 16;
  CHECK_NUMBER(latchkey_encrypt(crypto, &key, buffer, 17, buffer + 16, &length),
               LATCHKEY_BAD_ARGUMENT);
  key.password = buffer;
  length = 16;
  CHECK_NUMBER(latchkey_encrypt(crypto, &key, (const uint8_t*)"attack", 6, buffer, &length),
               LATCHKEY_BAD_ARGUMENT);
  CHECK_NUMBER(buffer[0], 'x');
  key = good_key();
  length = 16;
  CHECK_NUMBER(latchkey_encrypt(crypto, &key, buffer + 16, 6, buffer, &length), LATCHKEY_OK);
}

static void too_small_a_buffer_is_cleared_and_the_room_told(void) {
  const latchkey_key key = good_key();
  for (size_t room = 0; room < 8; ++room) {
    memset(buffer, 0x55, sizeof buffer);
    length = room;
    CHECK_NUMBER(latchkey_encrypt(crypto, &key, (const uint8_t*)"attack", 6, buffer, &length),
                 LATCHKEY_BUFFER_TOO_SMALL);
    CHECK_NUMBER(length, 8);
    for (size_t i = 0; i < sizeof buffer; ++i) CHECK_NUMBER(buffer[i], i < room ? 0 : 0x55);
  }
  length = 0;
  CHECK_NUMBER(latchkey_hash(crypto, LATCHKEY_SHA1, NULL, 0, NULL, &length),
               LATCHKEY_BUFFER_TOO_SMALL);
  CHECK_NUMBER(length, 20);
  length = 4;
  CHECK_NUMBER(latchkey_hex_encode((const uint8_t*)"ab", 2, (char*)buffer, &length),
               LATCHKEY_BUFFER_TOO_SMALL);
  CHECK_NUMBER(length, 5);
  length = 0;
  CHECK_NUMBER(latchkey_error_app_description(thread, NULL, &length), LATCHKEY_BUFFER_TOO_SMALL);
  CHECK_NUMBER(length, 1);
}

static void a_result_leaves_the_rest_of_the_buffer_alone(void) {
  const latchkey_key key = good_key();
  memset(buffer, 0x55, sizeof buffer);
  CHECK_NUMBER(encrypt(&key), LATCHKEY_OK);
  CHECK_NUMBER(length, 8);
  for (size_t i = 8; i < sizeof buffer; ++i) CHECK_NUMBER(buffer[i], 0x55);
}

int main(void) {
  CHECK_NUMBER(latchkey_thread_open(&thread), LATCHKEY_OK);
  CHECK_NUMBER(latchkey_crypto_open(&crypto), LATCHKEY_OK);
  CHECK_NUMBER(latchkey_timer_open(&timer), LATCHKEY_OK);
  every_status_has_a_text_of_its_own();
  wrong_handles_are_refused();
  closing_nothing_does_nothing();
  missing_pointers_are_refused();
  unknown_flags_are_refused();
  two_passwords_are_refused();
  outputs_that_overlap_inputs_are_refused();
  too_small_a_buffer_is_cleared_and_the_room_told();
  a_result_leaves_the_rest_of_the_buffer_alone();
  CHECK_NUMBER(latchkey_timer_close(timer), LATCHKEY_OK);
  CHECK_NUMBER(latchkey_crypto_close(crypto), LATCHKEY_OK);
  CHECK_NUMBER(latchkey_thread_close(thread), LATCHKEY_OK);
  return check_result();
}
