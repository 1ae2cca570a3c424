/* Hashes, encrypts and decrypts bytes, and prints the failure that a wrong password causes.
 *
 *   cc encrypt_bytes.c $(pkg-config --cflags --libs latchkey) -o encrypt_bytes
 */
#include <latchkey.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

static void must(int status, const latchkey_failure* failure) {
  if (status == LATCHKEY_OK) return;
  fprintf(stderr, "%s\n", failure->text);
  exit(EXIT_FAILURE);
}

static void print_hex(const char* name, const uint8_t* bytes, size_t length) {
  char text[2 * 64 + 1];
  size_t text_length = sizeof text;
  if (latchkey_hex_encode(bytes, length, text, &text_length, NULL) == LATCHKEY_OK) {
    printf("%-10s %s\n", name, text);
  }
}

static latchkey_key* open_key(const char* password, latchkey_failure* failure) {
  latchkey_settings settings = LATCHKEY_SETTINGS_INIT;
  latchkey_key* key = NULL;
  settings.hash = LATCHKEY_SHA1;
  settings.cipher = LATCHKEY_3DES;
  must(latchkey_key_open(&settings, (const uint8_t*)password, strlen(password), &key, failure),
       failure);
  return key;
}

int main(void) {
  static const char kMessage[] = "attack at dawn";
  latchkey_failure failure = LATCHKEY_FAILURE_INIT;
  latchkey_key* key = open_key("correct horse", &failure);
  latchkey_key* wrong_key = open_key("correct hors", &failure);
  uint8_t digest[20];
  uint8_t ciphertext[64];
  uint8_t plaintext[64];
  size_t digest_length = sizeof digest; /* the room on entry, the length on return */
  size_t ciphertext_length = sizeof ciphertext;
  size_t plaintext_length = sizeof plaintext;

  must(latchkey_digest(LATCHKEY_SHA1, (const uint8_t*)"abc", 3, digest, &digest_length, &failure),
       &failure);
  print_hex("digest", digest, digest_length);

  must(latchkey_encrypt(key, (const uint8_t*)kMessage, strlen(kMessage), ciphertext,
                        &ciphertext_length, &failure),
       &failure);
  print_hex("ciphertext", ciphertext, ciphertext_length);
  must(latchkey_decrypt(key, ciphertext, ciphertext_length, plaintext, &plaintext_length, &failure),
       &failure);
  printf("%-10s %.*s\n", "plaintext", (int)plaintext_length, (const char*)plaintext);

  plaintext_length = sizeof plaintext;
  if (latchkey_decrypt(wrong_key, ciphertext, ciphertext_length, plaintext, &plaintext_length,
                       &failure) != LATCHKEY_OK) {
    printf("%-10s %s (location %d, number %d)\n", "failure", failure.text, (int)failure.location,
           (int)failure.number);
  }
  latchkey_key_close(wrong_key);
  latchkey_key_close(key);
  return EXIT_SUCCESS;
}
