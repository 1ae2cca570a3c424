/* A client in C11: every function of latchkey.h called as its description says. */
#include <latchkey.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#define CHECK(condition)                                              \
  do {                                                                \
    if (!(condition)) {                                               \
      fprintf(stderr, "%s:%d: %s\n", __FILE__, __LINE__, #condition); \
      exit(EXIT_FAILURE);                                             \
    }                                                                 \
  } while (0)

static const uint8_t kText[] = "a message for the other program";
static const size_t kTextLength = sizeof kText - 1;

static latchkey_key* open_key(void) {
  latchkey_settings settings = LATCHKEY_SETTINGS_INIT;
  latchkey_failure failure = LATCHKEY_FAILURE_INIT;
  latchkey_key* key = NULL;
  settings.hash = LATCHKEY_MD5;
  settings.cipher = LATCHKEY_RC2;
  settings.key_bits = 80;
  CHECK(latchkey_key_open(&settings, (const uint8_t*)"PNEMAIL", 7, &key, &failure) == LATCHKEY_OK);
  CHECK(key != NULL && failure.status == LATCHKEY_OK);
  return key;
}

static void messages_come_back(latchkey_key* key) {
  uint8_t ciphertext[64];
  uint8_t plaintext[64];
  size_t ciphertext_length = sizeof ciphertext;
  size_t plaintext_length = 1;
  CHECK(latchkey_encrypt(key, kText, kTextLength, ciphertext, &ciphertext_length, NULL) ==
        LATCHKEY_OK);
  CHECK(ciphertext_length == 32);
  CHECK(latchkey_decrypt(key, ciphertext, ciphertext_length, plaintext, &plaintext_length, NULL) ==
        LATCHKEY_BUFFER_TOO_SMALL);
  CHECK(plaintext_length == kTextLength); /* the room that is needed */
  CHECK(latchkey_decrypt(key, ciphertext, ciphertext_length, plaintext, &plaintext_length, NULL) ==
        LATCHKEY_OK);
  CHECK(plaintext_length == kTextLength && memcmp(plaintext, kText, kTextLength) == 0);
}

static void streams_give_the_same(latchkey_key* key) {
  latchkey_stream* stream = NULL;
  uint8_t whole[64];
  uint8_t pieces[64];
  size_t whole_length = sizeof whole;
  size_t length = sizeof pieces;
  size_t rest_length;
  CHECK(latchkey_encrypt(key, kText, kTextLength, whole, &whole_length, NULL) == LATCHKEY_OK);
  CHECK(latchkey_stream_open(key, LATCHKEY_ENCRYPT, &stream, NULL) == LATCHKEY_OK);
  CHECK(latchkey_stream_update(stream, kText, kTextLength, pieces, &length, NULL) == LATCHKEY_OK);
  rest_length = sizeof pieces - length;
  CHECK(latchkey_stream_finish(stream, pieces + length, &rest_length, NULL) == LATCHKEY_OK);
  CHECK(length + rest_length == whole_length && memcmp(pieces, whole, whole_length) == 0);
  CHECK(latchkey_stream_close(stream) == LATCHKEY_OK);
}

/* A column of two ciphertexts, the second one damaged. */
static void records_are_decrypted(latchkey_key* key) {
  static const uint8_t kData[] = {0xDC, 0x3D, 0x96, 0x23, 0x29, 0xDD, 0x1B, 0x2F, 0x00};
  static const int64_t kOffsets[] = {0, 8, 9};
  int64_t offsets[3];
  int32_t statuses[2];
  uint8_t data[sizeof kData];
  latchkey_records records = LATCHKEY_RECORDS_INIT;
  latchkey_results results = LATCHKEY_RESULTS_INIT;
  latchkey_failure failure = LATCHKEY_FAILURE_INIT;
  records.count = 2;
  records.offsets = kOffsets;
  records.data = kData;
  records.data_length = sizeof kData;
  results.offsets = offsets;
  results.data = data;
  results.data_length = sizeof data;
  results.statuses = statuses;
  CHECK(latchkey_decrypt_records(key, &records, 1, &results, &failure) == LATCHKEY_OK);
  CHECK(statuses[0] == LATCHKEY_OK && statuses[1] == LATCHKEY_CIPHER_FAILED);
  CHECK(results.failed == 1 && results.data_length == 7 && offsets[1] == 7 && offsets[2] == 7);
  CHECK(memcmp(data, "BF0AC41", 7) == 0);
  CHECK(failure.status == LATCHKEY_CIPHER_FAILED && failure.type == 2 && failure.location == 717);
}

static void records_are_encrypted(latchkey_key* key) {
  static const int32_t kOffsets[] = {0, 7};
  int32_t offsets[2];
  uint8_t data[8];
  latchkey_records records = LATCHKEY_RECORDS_INIT;
  latchkey_results results = LATCHKEY_RESULTS_INIT;
  records.offset_size = results.offset_size = sizeof(int32_t);
  records.count = 1;
  records.offsets = kOffsets;
  records.data = (const uint8_t*)"BF0AC41";
  records.data_length = 7;
  results.offsets = offsets;
  results.data = data;
  results.data_length = sizeof data;
  CHECK(latchkey_encrypt_records(key, &records, 0, &results, NULL) == LATCHKEY_OK);
  CHECK(offsets[1] == 8 && memcmp(data, "\xDC\x3D\x96\x23\x29\xDD\x1B\x2F", 8) == 0);
}

static void settings_are_identified(void) {
  static const int64_t kOffsets[] = {0, 48};
  static const char kLongText[] = "a text that has some length and no secret in it";
  latchkey_settings settings = LATCHKEY_SETTINGS_INIT;
  latchkey_records samples = LATCHKEY_RECORDS_INIT;
  latchkey_candidate candidates[64];
  latchkey_key* key = NULL;
  uint8_t ciphertext[48];
  size_t length = sizeof ciphertext;
  size_t count = sizeof candidates / sizeof candidates[0];
  settings.hash = LATCHKEY_SHA1;
  settings.cipher = LATCHKEY_3DES;
  CHECK(latchkey_key_open(&settings, (const uint8_t*)"secret", 6, &key, NULL) == LATCHKEY_OK);
  CHECK(latchkey_encrypt(key, (const uint8_t*)kLongText, strlen(kLongText), ciphertext, &length,
                         NULL) == LATCHKEY_OK);
  CHECK(length == 48 && latchkey_key_close(key) == LATCHKEY_OK);
  samples.count = 1;
  samples.offsets = kOffsets;
  samples.data = ciphertext;
  samples.data_length = length;
  CHECK(latchkey_identify(&samples, (const uint8_t*)"secret", 6, sizeof candidates[0], candidates,
                          &count, NULL) == LATCHKEY_OK);
  CHECK(count >= 1 && candidates[0].settings.cipher == LATCHKEY_3DES);
  CHECK(latchkey_key_open(&candidates[0].settings, (const uint8_t*)"secret", 6, &key, NULL) ==
        LATCHKEY_OK);
  CHECK(latchkey_key_close(key) == LATCHKEY_OK);
}

static void digests_are_those_published(void) {
  static const char kExpected[] = "A9993E364706816ABA3E25717850C26C9CD0D89D";
  latchkey_hash* hash = NULL;
  uint8_t digest[20];
  uint8_t decoded[20];
  char text[41];
  size_t length = sizeof digest;
  size_t text_length = sizeof text;
  CHECK(latchkey_hash_open(LATCHKEY_SHA1, &hash, NULL) == LATCHKEY_OK);
  CHECK(latchkey_hash_update(hash, (const uint8_t*)"a", 1, NULL) == LATCHKEY_OK);
  CHECK(latchkey_hash_update(hash, (const uint8_t*)"bc", 2, NULL) == LATCHKEY_OK);
  CHECK(latchkey_hash_finish(hash, digest, &length, NULL) == LATCHKEY_OK);
  CHECK(latchkey_hash_close(hash) == LATCHKEY_OK);
  CHECK(latchkey_hex_encode(digest, length, text, &text_length, NULL) == LATCHKEY_OK);
  CHECK(text_length == sizeof text && strcmp(text, kExpected) == 0);
  length = sizeof decoded;
  CHECK(latchkey_hex_decode(text, strlen(text), decoded, &length, NULL) == LATCHKEY_OK);
  CHECK(length == sizeof decoded && memcmp(decoded, digest, length) == 0);
  CHECK(latchkey_digest(LATCHKEY_SHA1, (const uint8_t*)"abc", 3, decoded, &length, NULL) ==
        LATCHKEY_OK);
  CHECK(memcmp(decoded, digest, length) == 0);
}

static void random_data_differ(void) {
  uint8_t bytes[2][16];
  char letters[2][17] = {{0}};
  for (int i = 0; i < 2; ++i) {
    CHECK(latchkey_random_bytes(bytes[i], sizeof bytes[i], NULL) == LATCHKEY_OK);
    CHECK(latchkey_salt(letters[i], 16, NULL) == LATCHKEY_OK);
    CHECK(strlen(letters[i]) == 16);
  }
  CHECK(memcmp(bytes[0], bytes[1], sizeof bytes[0]) != 0);
  CHECK(strcmp(letters[0], letters[1]) != 0);
}

int main(void) {
  latchkey_key* const key = open_key();
  CHECK(latchkey_key_share(key) == LATCHKEY_OK);
  CHECK(latchkey_key_close(key) == LATCHKEY_OK);
  messages_come_back(key);
  streams_give_the_same(key);
  records_are_decrypted(key);
  records_are_encrypted(key);
  CHECK(latchkey_key_close(key) == LATCHKEY_OK);
  settings_are_identified();
  digests_are_those_published();
  random_data_differ();
  CHECK(strcmp(latchkey_status_text(LATCHKEY_OK), "Done") == 0);
  CHECK(strlen(latchkey_version()) > 0);
  return EXIT_SUCCESS;
}
