/* A failure is in the thread's record, with the location and the number of the component. */
#include <pthread.h>

#include "check.h"
#include "latchkey.h"

static latchkey_thread* thread = NULL;
static latchkey_crypto* crypto = NULL;

static void check_record(int exists, int type, int location, int app_number) {
  latchkey_error error;
  CHECK_NUMBER(latchkey_error_read(thread, &error), LATCHKEY_OK);
  CHECK_NUMBER(error.error_exists, exists);
  CHECK_NUMBER(error.error_type, type);
  CHECK_NUMBER(error.location_id, location);
  CHECK_NUMBER(error.app_error_number, app_number);
  CHECK_NUMBER(error.machine_state, 0);
}

static void check_text(const char* expected) {
  char text[64];
  size_t length = sizeof text;
  CHECK_NUMBER(latchkey_error_app_description(thread, text, &length), LATCHKEY_OK);
  CHECK_NUMBER(length, strlen(expected) + 1);
  CHECK(strcmp(text, expected) == 0);
}

static int run(int decrypt, latchkey_key key, size_t input_length) {
  const uint8_t input[16] = {0};
  uint8_t output[32];
  size_t length = sizeof output;
  const int status = (decrypt ? latchkey_decrypt : latchkey_encrypt)(crypto, &key, input,
                                                                     input_length, output, &length);
  CHECK_NUMBER(length != 0, status == LATCHKEY_OK && input_length != 0);
  return status;
}

static void a_new_record_is_empty(void) {
  check_record(0, 2, 0, 0);
  check_text("");
}

static void failures_have_their_locations(void) {
  const latchkey_key bad_hash = {0, 5, LATCHKEY_RC4, 0, NULL, 0};
  const latchkey_key far_hash = {0, 0x10001, LATCHKEY_RC4, 0, NULL, 0};
  const latchkey_key bad_cipher = {0, LATCHKEY_MD5, LATCHKEY_3DES, 0, NULL, 0};
  const latchkey_key no_cipher = {LATCHKEY_ENHANCED, LATCHKEY_MD5, 6, 0, NULL, 0};
  const latchkey_key bad_key = {0, LATCHKEY_MD5, LATCHKEY_DES, 40, NULL, 0};
  const latchkey_key good = {0, LATCHKEY_MD5, LATCHKEY_DES, 0, NULL, 0};
  const struct {
    int decrypt;
    latchkey_key key;
    int status, location, number;
    const char* text;
  } cases[] = {
      {0, bad_hash, LATCHKEY_BAD_HASH, 718, 115, "Bad hash type"},
      {1, bad_hash, LATCHKEY_BAD_HASH, 711, 115, "Bad hash type"},
      {0, far_hash, LATCHKEY_BAD_HASH, 718, 115, "Bad hash type"},
      {0, bad_cipher, LATCHKEY_BAD_CIPHER, 719, 121, "Bad encryption type"},
      {1, bad_cipher, LATCHKEY_BAD_CIPHER, 712, 116, "Bad encryption type"},
      {0, no_cipher, LATCHKEY_BAD_CIPHER, 719, 121, "Bad encryption type"},
      {0, bad_key, LATCHKEY_KEY_FAILED, 723, 119, "Error deriving key"},
      {1, bad_key, LATCHKEY_KEY_FAILED, 716, 119, "Error deriving key"},
      {1, good, LATCHKEY_CIPHER_FAILED, 717, 120, "Error decrypting data"},
  };
  for (size_t i = 0; i < sizeof cases / sizeof cases[0]; ++i) {
    CHECK_NUMBER(run(cases[i].decrypt, cases[i].key, 15), cases[i].status);
    check_record(1, 2, cases[i].location, cases[i].number);
    check_text(cases[i].text);
  }
}

static void a_success_clears_the_record(void) {
  const latchkey_key good = {0, LATCHKEY_MD5, LATCHKEY_DES, 0, NULL, 0};
  CHECK_NUMBER(run(0, good, 15), LATCHKEY_OK);
  check_record(0, 2, 717, 120);
  check_text("");
}

static void a_fault_is_recorded_with_its_number(void) {
  uint8_t output[8];
  char text[64];
  size_t length = sizeof output;
  latchkey_error error;
  CHECK_NUMBER(latchkey_create_random(crypto, 0, -1, output, &length), LATCHKEY_FAULT);
  CHECK_NUMBER(latchkey_error_read(thread, &error), LATCHKEY_OK);
  CHECK_NUMBER(error.error_type, 1);
  CHECK_NUMBER(error.location_id, 433);
  CHECK_NUMBER(error.rt_error_number, 5);
  length = sizeof text;
  CHECK_NUMBER(latchkey_error_rt_description(thread, text, &length), LATCHKEY_OK);
  CHECK(strcmp(text, "Invalid procedure call or argument") == 0);
}

static void odd_hexadecimal_is_recorded(void) {
  uint8_t output[8];
  size_t length = sizeof output;
  CHECK_NUMBER(latchkey_hex_decode("414", 3, output, &length), LATCHKEY_BAD_HEX);
  CHECK_NUMBER(length, 0);
  check_record(1, 2, 727, 123);
  check_text("Error converting data");
}

static void an_unknown_hash_records_nothing(void) {
  uint8_t digest[20];
  size_t length = sizeof digest;
  CHECK_NUMBER(latchkey_hash(crypto, 0, NULL, 0, digest, &length), LATCHKEY_BAD_HASH);
  check_record(0, 2, 727, 123);
}

static void random_results_have_their_lengths(void) {
  uint8_t bytes[200];
  size_t length = sizeof bytes;
  CHECK_NUMBER(latchkey_create_random(crypto, LATCHKEY_EXACT_LENGTH, 40, bytes, &length),
               LATCHKEY_OK);
  CHECK(length > 0 && length <= 40);
  length = sizeof bytes;
  CHECK_NUMBER(
      latchkey_create_random(crypto, LATCHKEY_EXACT_LENGTH | LATCHKEY_AS_HEX, 40, bytes, &length),
      LATCHKEY_OK);
  CHECK_NUMBER(length, 40);
  for (size_t i = 0; i < length; ++i) CHECK(strchr("0123456789ABCDEF", bytes[i]) != NULL);
  length = sizeof bytes;
  CHECK_NUMBER(latchkey_create_salt(crypto, LATCHKEY_LETTERS_ONLY, 50, bytes, &length),
               LATCHKEY_OK);
  CHECK_NUMBER(length, 50);
  for (size_t i = 0; i < length; ++i) {
    CHECK((bytes[i] >= 'A' && bytes[i] <= 'Z') || (bytes[i] >= 'a' && bytes[i] <= 'z'));
  }
  length = sizeof bytes;
  CHECK_NUMBER(latchkey_create_salt(crypto, 0, 50, bytes, &length), LATCHKEY_OK);
  CHECK(length > 0 && length <= 50);
}

static void random_bytes_fill_just_what_was_asked_for(void) {
  uint8_t first[40];
  uint8_t second[40];
  memset(first, 0, sizeof first);
  memset(second, 0, sizeof second);
  CHECK_NUMBER(latchkey_random_bytes(crypto, first, 32), LATCHKEY_OK);
  CHECK_NUMBER(latchkey_random_bytes(crypto, second, 32), LATCHKEY_OK);
  CHECK(memcmp(first, second, 32) != 0);
  for (size_t i = 32; i < sizeof first; ++i) CHECK_NUMBER(first[i], 0);
  CHECK_NUMBER(latchkey_random_bytes(crypto, NULL, 0), LATCHKEY_OK);
}

static void the_timer_and_the_probe_answer(void) {
  latchkey_timer* timer = NULL;
  int32_t milliseconds = -1;
  int32_t connected = -1;
  CHECK_NUMBER(latchkey_timer_open(&timer), LATCHKEY_OK);
  CHECK_NUMBER(latchkey_timer_start(timer), LATCHKEY_OK);
  CHECK_NUMBER(latchkey_timer_elapsed(timer, &milliseconds), LATCHKEY_OK);
  CHECK(milliseconds >= 0);
  CHECK_NUMBER(latchkey_timer_close(timer), LATCHKEY_OK);
  CHECK_NUMBER(latchkey_connection_exists(thread, &connected), LATCHKEY_OK);
  CHECK(connected == 0 || connected == 1);
}

/* Handles of the first thread do not work here, and there is no record yet. */
static void* on_another_thread(void* unused) {
  latchkey_thread* own_thread = NULL;
  latchkey_crypto* own_crypto = NULL;
  latchkey_error error;
  uint8_t output[8];
  size_t length = sizeof output;
  CHECK_NUMBER(latchkey_error_read(thread, &error), LATCHKEY_WRONG_THREAD);
  CHECK_NUMBER(latchkey_thread_close(thread), LATCHKEY_WRONG_THREAD);
  CHECK_NUMBER(latchkey_random_bytes(crypto, output, sizeof output), LATCHKEY_WRONG_THREAD);

  CHECK_NUMBER(latchkey_crypto_open(&own_crypto), LATCHKEY_OK);
  CHECK_NUMBER(latchkey_random_bytes(own_crypto, output, sizeof output), LATCHKEY_NO_RECORD);
  length = sizeof output;
  CHECK_NUMBER(latchkey_create_salt(own_crypto, 0, 4, output, &length), LATCHKEY_NO_RECORD);
  length = sizeof output;
  CHECK_NUMBER(latchkey_hex_decode("4", 1, output, &length), LATCHKEY_NO_RECORD);
  CHECK_NUMBER(latchkey_hex_decode("41", 2, output, &length), LATCHKEY_BUFFER_TOO_SMALL);

  CHECK_NUMBER(latchkey_thread_open(&own_thread), LATCHKEY_OK);
  CHECK_NUMBER(latchkey_random_bytes(own_crypto, output, sizeof output), LATCHKEY_OK);
  CHECK_NUMBER(latchkey_error_read(own_thread, &error), LATCHKEY_OK);
  CHECK_NUMBER(error.error_exists, 0);
  CHECK_NUMBER(latchkey_thread_close(own_thread), LATCHKEY_OK);
  CHECK_NUMBER(latchkey_random_bytes(own_crypto, output, sizeof output), LATCHKEY_NO_RECORD);
  *(latchkey_crypto**)unused = own_crypto;
  return NULL;
}

static void threads_do_not_see_each_other(void) {
  latchkey_crypto* theirs = NULL;
  uint8_t output[8];
  size_t length = sizeof output;
  pthread_t other;
  CHECK_NUMBER(latchkey_hex_decode("4", 1, output, &length), LATCHKEY_BAD_HEX);
  CHECK_NUMBER(pthread_create(&other, NULL, on_another_thread, &theirs), 0);
  CHECK_NUMBER(pthread_join(other, NULL), 0);
  check_record(1, 2, 727, 123);
  CHECK_NUMBER(latchkey_crypto_close(theirs), LATCHKEY_OK);
}

static void a_closed_record_is_gone(void) {
  latchkey_thread* second = NULL;
  latchkey_error error;
  CHECK_NUMBER(latchkey_thread_open(&second), LATCHKEY_OK);
  check_record(0, 2, 0, 0);
  CHECK_NUMBER(latchkey_thread_close(second), LATCHKEY_OK);
  CHECK_NUMBER(latchkey_error_read(thread, &error), LATCHKEY_NO_RECORD);
  CHECK_NUMBER(error.error_type, 0);
}

int main(void) {
  CHECK_NUMBER(latchkey_thread_open(&thread), LATCHKEY_OK);
  CHECK_NUMBER(latchkey_crypto_open(&crypto), LATCHKEY_OK);
  a_new_record_is_empty();
  failures_have_their_locations();
  a_success_clears_the_record();
  a_fault_is_recorded_with_its_number();
  odd_hexadecimal_is_recorded();
  an_unknown_hash_records_nothing();
  random_results_have_their_lengths();
  random_bytes_fill_just_what_was_asked_for();
  the_timer_and_the_probe_answer();
  threads_do_not_see_each_other();
  a_closed_record_is_gone();
  CHECK_NUMBER(latchkey_crypto_close(crypto), LATCHKEY_OK);
  CHECK_NUMBER(latchkey_thread_close(thread), LATCHKEY_OK);
  return check_result();
}
