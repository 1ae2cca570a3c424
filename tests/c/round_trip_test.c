/* Exact bytes survive the C interface: every hash, cipher and provider, every awkward ending. */
#include "check.h"
#include "latchkey.h"

enum { kLargest = 100 };

static const uint8_t kPassword[] = {'p', 'a', ' ', 0, 0xFF, ' '};

static size_t encrypted_length(int cipher, size_t length) {
  return cipher == LATCHKEY_RC4 ? length : (length / 8 + 1) * 8;
}

static void check_round_trip(latchkey_crypto* crypto, const latchkey_key* key, const uint8_t* plain,
                             size_t length) {
  uint8_t encrypted[kLargest + 8];
  uint8_t decrypted[kLargest + 8];
  size_t encrypted_size = sizeof encrypted;
  size_t decrypted_size = sizeof decrypted;
  CHECK_NUMBER(latchkey_encrypt(crypto, key, plain, length, encrypted, &encrypted_size),
               LATCHKEY_OK);
  CHECK_NUMBER(encrypted_size, encrypted_length(key->cipher, length));
  CHECK_NUMBER(latchkey_decrypt(crypto, key, encrypted, encrypted_size, decrypted, &decrypted_size),
               LATCHKEY_OK);
  CHECK_NUMBER(decrypted_size, length);
  CHECK_BYTES(decrypted, plain, length);
}

static void check_setting(latchkey_crypto* crypto, const latchkey_key* key) {
  uint8_t plain[kLargest];
  const uint8_t endings[] = {' ', 0, '\n', 0xFF};
  for (size_t length = 0; length < 20; ++length) {
    for (size_t i = 0; i < sizeof endings; ++i) {
      memset(plain, endings[i], sizeof plain);
      check_round_trip(crypto, key, plain, length);
    }
  }
}

static void every_setting_gives_the_bytes_back(latchkey_crypto* crypto) {
  for (uint32_t flags = 0; flags <= LATCHKEY_ENHANCED; ++flags) {
    const int last_cipher = flags & LATCHKEY_ENHANCED ? LATCHKEY_3DES_112 : LATCHKEY_DES;
    for (int hash = LATCHKEY_MD5; hash <= LATCHKEY_SHA1; ++hash) {
      for (int cipher = LATCHKEY_RC4; cipher <= last_cipher; ++cipher) {
        latchkey_key key = {flags, hash, cipher, 0, kPassword, sizeof kPassword};
        check_setting(crypto, &key);
        key.password_length = 0;
        check_setting(crypto, &key);
        key.flags |= LATCHKEY_DEFAULT_PASSWORD;
        check_setting(crypto, &key);
      }
    }
  }
}

/* Every byte of the password counts: zeros, spaces, the last one, a single one. */
static void each_password_has_its_own_key(latchkey_crypto* crypto) {
  const char* const passwords[] = {"", "a", "a ", "a\0", "a\0b", "a  ", " a"};
  const size_t lengths[] = {0, 1, 2, 2, 3, 3, 2};
  enum { kCount = sizeof lengths / sizeof lengths[0] };
  uint8_t results[kCount][16];
  const uint8_t plain[16] = {0};
  for (size_t i = 0; i < kCount; ++i) {
    latchkey_key key = {0, LATCHKEY_MD5, LATCHKEY_RC4, 0, NULL, lengths[i]};
    size_t length = sizeof results[i];
    key.password = (const uint8_t*)passwords[i];
    CHECK_NUMBER(latchkey_encrypt(crypto, &key, plain, sizeof plain, results[i], &length),
                 LATCHKEY_OK);
    for (size_t other = 0; other < i; ++other) {
      CHECK(memcmp(results[i], results[other], sizeof results[i]) != 0);
    }
  }
}

/* RFC 1321, 1320, 1319 and 3174 on "abc". */
static void digests_are_the_published_ones(latchkey_crypto* crypto) {
  const char* const published[] = {
      "900150983CD24FB0D6963F7D28E17F72", "A448017AAF21D8525FC10AE87AA6729D",
      "DA853B0D3F88D99B30283A69E6DED6BB", "A9993E364706816ABA3E25717850C26C9CD0D89D"};
  for (int hash = LATCHKEY_MD5; hash <= LATCHKEY_SHA1; ++hash) {
    uint8_t digest[20];
    char hex[41];
    size_t length = sizeof digest;
    size_t hex_length = sizeof hex;
    CHECK_NUMBER(latchkey_hash(crypto, hash, (const uint8_t*)"abc", 3, digest, &length),
                 LATCHKEY_OK);
    CHECK_NUMBER(latchkey_hex_encode(digest, length, hex, &hex_length), LATCHKEY_OK);
    CHECK_NUMBER(hex_length, length * 2 + 1);
    CHECK(strcmp(hex, published[hash - 1]) == 0);
  }
}

static void hexadecimal_keeps_every_byte(void) {
  uint8_t bytes[256];
  uint8_t decoded[256];
  char text[513];
  size_t text_length = sizeof text;
  size_t decoded_length = sizeof decoded;
  for (size_t i = 0; i < sizeof bytes; ++i) bytes[i] = (uint8_t)(255 - i);
  bytes[255] = ' ';
  CHECK_NUMBER(latchkey_hex_encode(bytes, sizeof bytes, text, &text_length), LATCHKEY_OK);
  CHECK_NUMBER(text_length, sizeof text);
  CHECK_NUMBER(text[512], 0);
  CHECK_NUMBER(latchkey_hex_decode(text, text_length - 1, decoded, &decoded_length), LATCHKEY_OK);
  CHECK_NUMBER(decoded_length, sizeof bytes);
  CHECK_BYTES(decoded, bytes, sizeof bytes);
}

/* A made-up RC2 key length changes the key; only RC2 takes one. */
static void rc2_takes_an_effective_length(latchkey_crypto* crypto) {
  const uint8_t plain[8] = "12345678";
  uint8_t usual[16];
  uint8_t old[16];
  size_t length = sizeof usual;
  latchkey_key key = {LATCHKEY_ENHANCED, LATCHKEY_MD5,    LATCHKEY_RC2, 0,
                      kPassword,         sizeof kPassword};
  CHECK_NUMBER(latchkey_encrypt(crypto, &key, plain, 8, usual, &length), LATCHKEY_OK);
  key.rc2_effective_bits = 40;
  length = sizeof old;
  CHECK_NUMBER(latchkey_encrypt(crypto, &key, plain, 8, old, &length), LATCHKEY_OK);
  CHECK(memcmp(usual, old, sizeof old) != 0);
  key.cipher = LATCHKEY_RC4;
  length = sizeof old;
  CHECK_NUMBER(latchkey_encrypt(crypto, &key, plain, 8, old, &length), LATCHKEY_KEY_FAILED);
}

int main(void) {
  latchkey_thread* thread = NULL;
  latchkey_crypto* crypto = NULL;
  CHECK_NUMBER(latchkey_thread_open(&thread), LATCHKEY_OK);
  CHECK_NUMBER(latchkey_crypto_open(&crypto), LATCHKEY_OK);
  every_setting_gives_the_bytes_back(crypto);
  each_password_has_its_own_key(crypto);
  digests_are_the_published_ones(crypto);
  hexadecimal_keeps_every_byte();
  rc2_takes_an_effective_length(crypto);
  CHECK_NUMBER(latchkey_crypto_close(crypto), LATCHKEY_OK);
  CHECK_NUMBER(latchkey_thread_close(thread), LATCHKEY_OK);
  return check_result();
}
