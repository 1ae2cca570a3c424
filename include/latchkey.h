/* Latchkey's C interface, for every language with a foreign-function interface.
 *
 * Status. A function that can fail returns a status: LATCHKEY_OK (0) or one of the codes of enum
 * latchkey_status. No function raises an exception or ends the process. A pointer to a
 * latchkey_failure may be NULL; otherwise the function fills the struct before it returns.
 *
 * Objects. A function that ends in _open makes an object, and the _close function of the same kind
 * destroys it. Closing NULL does nothing; every other function returns LATCHKEY_BAD_OBJECT for
 * NULL, and all do for an object of another kind. Passing a pointer that was closed, or that no
 * _open function returned, is undefined. After a failed _open the pointer is NULL.
 *
 * Threads. Only objects keep state. Any number of threads may use one latchkey_key at the same
 * time; only one thread at a time may use a latchkey_stream or latchkey_hash. Every object may be
 * closed on any thread, and used after fork() in both processes. Thread cancellation takes effect
 * after the function returns.
 *
 * Bytes. Data and passwords are exact bytes: none is trimmed, added or converted. Input is a
 * pointer and a length; the pointer may be NULL when the length is 0.
 *
 * Output. An output is a buffer and a pointer to a length: on entry the room in the buffer, on
 * return the length of the result, both in bytes. If the room is too small
 * (LATCHKEY_BUFFER_TOO_SMALL), the length becomes the room that is needed; after every other
 * failure it is 0. After a failure the buffer contains no part of the result: it is unchanged or
 * zeros. The buffer may be NULL when the room is 0. An output that overlaps an input or another
 * output is LATCHKEY_BAD_ARGUMENT.
 *
 * Structs. The caller sets each member named `size` to the size of the struct, as the macros ending
 * in _INIT do. Later versions add members at the end and still accept the smaller size. A size that
 * this version does not know is LATCHKEY_BAD_ARGUMENT.
 *
 * The algorithms are old. Use them to exchange data with systems that already use them.
 */
#ifndef LATCHKEY_H
#define LATCHKEY_H

/* NOLINTBEGIN: C, not C++ */

#include <stddef.h>
#include <stdint.h>

#if defined(__GNUC__) && !defined(_WIN32)
#define LATCHKEY_C_API __attribute__((visibility("default")))
#else
#define LATCHKEY_C_API
#endif

#ifdef __cplusplus
extern "C" {
#endif

enum latchkey_status {
  LATCHKEY_OK = 0,
  LATCHKEY_BAD_OBJECT = 1,       /* NULL, or an object of another kind */
  LATCHKEY_BAD_ARGUMENT = 2,     /* a pointer, size, number or offset that the function refuses */
  LATCHKEY_BUFFER_TOO_SMALL = 3, /* the length is the room that is needed */
  LATCHKEY_NO_MEMORY = 4,
  LATCHKEY_BAD_HASH = 5,          /* the hash number */
  LATCHKEY_BAD_CIPHER = 6,        /* the cipher number, or the provider lacks the cipher */
  LATCHKEY_NO_PROVIDER = 7,       /* the cryptographic provider cannot be opened */
  LATCHKEY_KEY_FAILED = 8,        /* the provider refuses the key, for example its length */
  LATCHKEY_CIPHER_FAILED = 9,     /* decrypting: a wrong password or setting, or damaged data */
  LATCHKEY_BAD_HEX = 10,          /* hexadecimal text of odd length */
  LATCHKEY_PROVIDER_REFUSED = 11, /* the provider returned no digest or no random bytes */
  LATCHKEY_FAULT = 12,            /* a run-time fault; the failure has its number */
  LATCHKEY_STATUS_COUNT = 13      /* not a status; every status is less */
};

/* One line in English for a status; "Unknown status" for any other number. Never NULL; valid while
 * the library is loaded. */
LATCHKEY_C_API const char* latchkey_status_text(int32_t status);

/* The library's version, such as "1.0.0". Valid while the library is loaded. */
LATCHKEY_C_API const char* latchkey_version(void);

/* Why a function failed, with the numbers that the component records: `latchkey errors 717` prints
 * what location 717 means. After success, all members except `size` are 0. */
typedef struct latchkey_failure {
  uint32_t size;
  int32_t status;   /* what the function returned, or the first failed record's status */
  int32_t type;     /* 1 run-time fault, 2 failed check, 0 neither: only `status` says more */
  int32_t location; /* of the failed check (709 to 727) or the fault (432 to 441); or 0 */
  int32_t number;   /* 101 to 160 for a failed check, an Automation number for a fault; or 0 */
  char text[76];    /* in English, with a zero at the end */
} latchkey_failure;

#define LATCHKEY_FAILURE_INIT                   \
  {                                             \
    sizeof(latchkey_failure), 0, 0, 0, 0, { 0 } \
  }

/* ---- Keys ---- */

enum latchkey_hash_number {
  LATCHKEY_MD5 = 1,
  LATCHKEY_MD4 = 2,
  LATCHKEY_MD2 = 3,
  LATCHKEY_SHA1 = 4
};

enum latchkey_cipher_number {
  LATCHKEY_RC4 = 1,
  LATCHKEY_RC2 = 2,
  LATCHKEY_DES = 3,
  LATCHKEY_3DES = 4,    /* enhanced provider only */
  LATCHKEY_3DES_112 = 5 /* two-key 3DES, enhanced provider only */
};

/* The provider sets the length of RC4 and RC2 keys: 40 bits (base) or 128 bits (enhanced). DES keys
 * are the same in both. */
enum latchkey_provider_number {
  LATCHKEY_ANY_PROVIDER = 0, /* base; enhanced for 3DES, rc2_effective_bits or key_bits over 56 */
  LATCHKEY_BASE = 1,
  LATCHKEY_ENHANCED = 2
};

enum latchkey_key_flags {
  LATCHKEY_DEFAULT_PASSWORD = 1 /* the library's built-in password; password_length must be 0 */
};

/* What a key is derived from, besides the password. */
typedef struct latchkey_settings {
  uint32_t size;
  uint32_t flags;              /* latchkey_key_flags; an unknown flag is LATCHKEY_BAD_ARGUMENT */
  int32_t hash;                /* a latchkey_hash_number */
  int32_t cipher;              /* a latchkey_cipher_number */
  int32_t provider;            /* a latchkey_provider_number */
  uint32_t key_bits;           /* RC4 and RC2: 40 to 56, enhanced to 128, in steps of 8; or 0 */
  uint32_t rc2_effective_bits; /* RC2: 1 to 1024, base only 40; 0 is the length of the key */
} latchkey_settings;

#define LATCHKEY_SETTINGS_INIT \
  { sizeof(latchkey_settings), 0, 0, 0, 0, 0, 0 }

typedef struct latchkey_key latchkey_key;

/* Derives a key from the hash of the password, as CryptDeriveKey does. No random salt is
 * added, so the same settings and password always give the same key. The key never changes, and is
 * wiped when it is destroyed. The password may be empty (length 0).
 *
 * `key_bits` sets the length of an RC4 or RC2 key; a value of 40 adds 11 zero bytes of salt. If
 * `rc2_effective_bits` is 0, the length of the key is used. Data that Windows 2000 and earlier
 * encrypted under RC2 with the enhanced provider has 40 effective bits.
 *
 * Fails with LATCHKEY_BAD_HASH (location 718), LATCHKEY_BAD_CIPHER (719), LATCHKEY_NO_PROVIDER
 * (720), LATCHKEY_KEY_FAILED (721 to 723), LATCHKEY_FAULT (438; fault 6 for a password of 4 GiB or
 * more). */
LATCHKEY_C_API int32_t latchkey_key_open(const latchkey_settings* settings, const uint8_t* password,
                                         size_t password_length, latchkey_key** key,
                                         latchkey_failure* failure);

/* Adds an owner to a key. Each owner closes the key once. */
LATCHKEY_C_API int32_t latchkey_key_share(latchkey_key* key);

/* Removes an owner of a key. The key is wiped and destroyed with its last owner, which may be a
 * stream. */
LATCHKEY_C_API int32_t latchkey_key_close(latchkey_key* key);

/* ---- One message ---- */

/* Encrypt and decrypt a whole message whose ciphertext is shorter than 4 GiB. RC4 keeps the length.
 * The block ciphers (CBC mode, zero initialization vector) pad to the next multiple of 8 above the
 * input's length; their plaintext is 1 to 8 bytes shorter than the ciphertext. Room for
 * input_length bytes, plus 8 when encrypting, is always enough. RC4 never detects a wrong password;
 * the other ciphers fail to detect one in 1 of 255 cases.
 *
 * Fail with LATCHKEY_CIPHER_FAILED (encrypting: location 724, decrypting: 717), LATCHKEY_FAULT
 * (438, 436; fault 6 if the input is too long). */
LATCHKEY_C_API int32_t latchkey_encrypt(const latchkey_key* key, const uint8_t* input,
                                        size_t input_length, uint8_t* output, size_t* output_length,
                                        latchkey_failure* failure);
LATCHKEY_C_API int32_t latchkey_decrypt(const latchkey_key* key, const uint8_t* input,
                                        size_t input_length, uint8_t* output, size_t* output_length,
                                        latchkey_failure* failure);

/* ---- One message in pieces ---- */

typedef struct latchkey_stream latchkey_stream;

enum latchkey_direction { LATCHKEY_ENCRYPT = 1, LATCHKEY_DECRYPT = 2 };

/* Opens a stream for messages of any length. It shares the key, which may be closed first. Fails
 * with LATCHKEY_KEY_FAILED (encrypting: location 723, decrypting: 716). */
LATCHKEY_C_API int32_t latchkey_stream_open(latchkey_key* key, int32_t direction,
                                            latchkey_stream** stream, latchkey_failure* failure);

/* Adds a piece of any length and returns the part of the result that is ready; the stream holds
 * back up to 8 bytes. Room for input_length + 8 bytes is always enough; if the room is too small,
 * the piece is not added. After a failure other than LATCHKEY_BUFFER_TOO_SMALL and
 * LATCHKEY_BAD_ARGUMENT, every later call except _close returns LATCHKEY_CIPHER_FAILED. */
LATCHKEY_C_API int32_t latchkey_stream_update(latchkey_stream* stream, const uint8_t* input,
                                              size_t input_length, uint8_t* output,
                                              size_t* output_length, latchkey_failure* failure);

/* Ends the message and returns the rest of its result, at most 8 bytes; room for 8 is required. The
 * next update begins a new message. Fails as latchkey_encrypt and latchkey_decrypt do; after a
 * failure, do not trust what the stream returned before. */
LATCHKEY_C_API int32_t latchkey_stream_finish(latchkey_stream* stream, uint8_t* output,
                                              size_t* output_length, latchkey_failure* failure);

/* Wipes and destroys the stream, at any point of a message. */
LATCHKEY_C_API int32_t latchkey_stream_close(latchkey_stream* stream);

/* ---- Many messages ---- */

/* Records in one buffer, as in a binary column of Apache Arrow: record i is the bytes from
 * offsets[i] up to offsets[i + 1] of `data`. Offsets that decrease, or are not from 0 to
 * data_length, are LATCHKEY_BAD_ARGUMENT. */
typedef struct latchkey_records {
  uint32_t size;
  uint32_t offset_size; /* 4: offsets are int32_t; 8: int64_t */
  size_t count;         /* number of records; there are count + 1 offsets */
  const void* offsets;
  const uint8_t* data;
  size_t data_length;
} latchkey_records;

#define LATCHKEY_RECORDS_INIT \
  { sizeof(latchkey_records), 8, 0, NULL, NULL, 0 }

/* The results, in the same layout. The caller sets every member; the function writes to the memory
 * that they point to, and sets data_length and failed. */
typedef struct latchkey_results {
  uint32_t size;
  uint32_t offset_size; /* 4 or 8 */
  void* offsets;        /* room for count + 1 offsets; the first becomes 0 */
  uint8_t* data;
  size_t data_length; /* the room; on return the sum of the results' lengths */
  int32_t* statuses;  /* room for count statuses; may be NULL */
  size_t failed;      /* on return the number of records that failed */
} latchkey_results;

#define LATCHKEY_RESULTS_INIT \
  { sizeof(latchkey_results), 8, NULL, NULL, 0, NULL, 0 }

/* Encrypt and decrypt each record as a message, on up to `threads` threads (0: one for each
 * processor that the process may use). A record that fails has a result of length 0 and its own
 * status; the call still succeeds, and `failure` describes the first such record.
 *
 * The room that is needed is the sum of the ciphertexts' lengths: when decrypting, of the records;
 * when encrypting, at most 8 bytes more for each record. If the room is smaller, the call fails
 * with LATCHKEY_BUFFER_TOO_SMALL, data_length becomes that sum, and nothing else is written. If the
 * sum is 2 GiB or more, offset_size must be 8 (LATCHKEY_BAD_ARGUMENT). After any other failure
 * `data` contains no part of a result, and the other values of `results` are undefined. */
LATCHKEY_C_API int32_t latchkey_encrypt_records(const latchkey_key* key,
                                                const latchkey_records* records, uint32_t threads,
                                                latchkey_results* results,
                                                latchkey_failure* failure);
LATCHKEY_C_API int32_t latchkey_decrypt_records(const latchkey_key* key,
                                                const latchkey_records* records, uint32_t threads,
                                                latchkey_results* results,
                                                latchkey_failure* failure);

/* ---- Identifying settings ---- */

/* Settings that ciphertexts may have been made with. */
typedef struct latchkey_candidate {
  double probability;         /* that these settings are the right ones, 0 to 1 */
  int32_t padding;            /* bytes of padding of the first sample; -1 for RC4 */
  latchkey_settings settings; /* ready for latchkey_key_open */
} latchkey_candidate;

/* Decrypts samples under every provider, hash and cipher and rates the results. All samples must
 * have been encrypted under the same settings and this password; more and longer samples give a
 * more certain answer.
 *
 * `candidates` has room for *candidate_count structs of candidate_size bytes each
 * (sizeof(latchkey_candidate)); 64 is enough for all. The most probable candidates are written, in
 * descending order, and *candidate_count becomes their number, 0 if no settings fit. The sum of the
 * probabilities is the probability that any of the tried settings is right. */
LATCHKEY_C_API int32_t latchkey_identify(const latchkey_records* samples, const uint8_t* password,
                                         size_t password_length, size_t candidate_size,
                                         latchkey_candidate* candidates, size_t* candidate_count,
                                         latchkey_failure* failure);

/* ---- Digests ---- */

/* The digest of any number of bytes: 16 bytes; 20 for LATCHKEY_SHA1. Fails with LATCHKEY_BAD_HASH,
 * LATCHKEY_NO_PROVIDER (location 709), LATCHKEY_PROVIDER_REFUSED, LATCHKEY_FAULT (432). */
LATCHKEY_C_API int32_t latchkey_digest(int32_t hash, const uint8_t* input, size_t input_length,
                                       uint8_t* digest, size_t* digest_length,
                                       latchkey_failure* failure);

typedef struct latchkey_hash latchkey_hash;

/* Hash a message in pieces: _update adds a piece, and _finish returns the digest. After _finish,
 * and after a failure other than LATCHKEY_BUFFER_TOO_SMALL and LATCHKEY_BAD_ARGUMENT, the next
 * update begins a new message. They fail as latchkey_digest does. */
LATCHKEY_C_API int32_t latchkey_hash_open(int32_t hash, latchkey_hash** object,
                                          latchkey_failure* failure);
LATCHKEY_C_API int32_t latchkey_hash_update(latchkey_hash* object, const uint8_t* input,
                                            size_t input_length, latchkey_failure* failure);
LATCHKEY_C_API int32_t latchkey_hash_finish(latchkey_hash* object, uint8_t* digest,
                                            size_t* digest_length, latchkey_failure* failure);
LATCHKEY_C_API int32_t latchkey_hash_close(latchkey_hash* object);

/* ---- Random data ---- */

/* Fills `bytes` with random bytes; after a failure they are zeros. Fails with LATCHKEY_NO_PROVIDER
 * (location 710), LATCHKEY_PROVIDER_REFUSED, LATCHKEY_FAULT (433; fault 6 for 4 GiB or more). */
LATCHKEY_C_API int32_t latchkey_random_bytes(uint8_t* bytes, size_t length,
                                             latchkey_failure* failure);

/* Fills `letters` with random letters A to Z and a to z, each equally likely, without a zero at the
 * end. Fails as latchkey_random_bytes does. */
LATCHKEY_C_API int32_t latchkey_salt(char* letters, size_t length, latchkey_failure* failure);

/* ---- Hexadecimal ---- */

/* Writes two upper-case digits for each byte and a zero at the end. text_length includes that zero,
 * on entry and on return. */
LATCHKEY_C_API int32_t latchkey_hex_encode(const uint8_t* input, size_t input_length, char* text,
                                           size_t* text_length, latchkey_failure* failure);

/* Writes one byte for each pair of characters. A pair is read up to its first character that is not
 * a hexadecimal digit; blanks are skipped, and a pair without a digit gives 0. text_length does not
 * include a zero at the end. Fails with LATCHKEY_BAD_HEX (location 727) if it is odd. */
LATCHKEY_C_API int32_t latchkey_hex_decode(const char* text, size_t text_length, uint8_t* output,
                                           size_t* output_length, latchkey_failure* failure);

#ifdef __cplusplus
}
#endif

/* NOLINTEND */

#endif /* LATCHKEY_H */
