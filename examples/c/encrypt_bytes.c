/* Hashes, encrypts and decrypts bytes, and reads what went wrong with a wrong password.
 *
 *   cc encrypt_bytes.c $(pkg-config --cflags --libs latchkey) -o encrypt_bytes
 */
#include <latchkey.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

static void must(int status) {
  if (status == LATCHKEY_OK) return;
  fprintf(stderr, "%s\n", latchkey_status_text(status));
  exit(EXIT_FAILURE);
}

static void print_hex(const char* name, const uint8_t* bytes, size_t length) {
  char text[2 * 64 + 1];
  size_t text_length = sizeof text;
  must(latchkey_hex_encode(bytes, length, text, &text_length));
  printf("%-10s %s\n", name, text);
}

/* What the error record says about the last failure. */
static void print_error(const latchkey_thread* thread) {
  latchkey_error error;
  char text[128];
  size_t text_length = sizeof text;
  int run_time;
  must(latchkey_error_read(thread, &error));
  run_time = error.error_type == 1; /* 2: found by the operation itself */
  must(run_time ? latchkey_error_rt_description(thread, text, &text_length)
                : latchkey_error_app_description(thread, text, &text_length));
  printf("%-10s %s (location %d, number %d)\n", "failure", text, (int)error.location_id,
         (int)(run_time ? error.rt_error_number : error.app_error_number));
}

int main(void) {
  static const char kMessage[] = "attack at dawn";
  static const char kPassword[] = "correct horse";
  latchkey_thread* thread = NULL; /* one on each thread: it holds the error record */
  latchkey_crypto* crypto = NULL;
  latchkey_key key = {.flags = LATCHKEY_ENHANCED,
                      .hash = LATCHKEY_SHA1,
                      .cipher = LATCHKEY_3DES,
                      .password = (const uint8_t*)kPassword,
                      .password_length = strlen(kPassword)};
  uint8_t digest[20];
  uint8_t ciphertext[64];
  uint8_t plaintext[64];
  size_t digest_length = sizeof digest;
  size_t ciphertext_length = sizeof ciphertext; /* the room; becomes the length */
  size_t plaintext_length = sizeof plaintext;

  must(latchkey_thread_open(&thread));
  must(latchkey_crypto_open(&crypto));

  must(latchkey_hash(crypto, LATCHKEY_SHA1, (const uint8_t*)"abc", 3, digest, &digest_length));
  print_hex("digest", digest, digest_length);

  must(latchkey_encrypt(crypto, &key, (const uint8_t*)kMessage, strlen(kMessage), ciphertext,
                        &ciphertext_length));
  print_hex("ciphertext", ciphertext, ciphertext_length);
  must(latchkey_decrypt(crypto, &key, ciphertext, ciphertext_length, plaintext, &plaintext_length));
  printf("%-10s %.*s\n", "plaintext", (int)plaintext_length, (const char*)plaintext);

  key.password_length -= 1;
  plaintext_length = sizeof plaintext;
  if (latchkey_decrypt(crypto, &key, ciphertext, ciphertext_length, plaintext, &plaintext_length) ==
      LATCHKEY_CIPHER_FAILED) {
    print_error(thread);
  }

  must(latchkey_crypto_close(crypto));
  must(latchkey_thread_close(thread));
  return EXIT_SUCCESS;
}
