/* Latchkey's C interface, for every language with a foreign-function interface.
 *
 * Status. A function that can fail returns a status: LATCHKEY_OK (0) or one of the codes below.
 * No function raises an exception or ends the process.
 *
 * Handles. A handle is made by an ..._open function and ended by the ..._close function of the
 * same kind. It is a number in the form of a pointer, never an address: NULL, a handle that was
 * closed and a handle of another kind give LATCHKEY_BAD_HANDLE. Closing NULL does nothing.
 *
 * Threads. Open one latchkey_thread on each thread that uses the library and close it there: it
 * makes the thread's error record, which every operation needs (LATCHKEY_NO_RECORD without one).
 * Another one on the same thread replaces the record with a new one; closing any of them removes
 * the record. A latchkey_crypto is used on the thread that opened it, a latchkey_timer by one
 * thread at a time; both may be closed on any thread. Elsewhere a call gives LATCHKEY_WRONG_THREAD
 * and does nothing. Nothing is shared between threads that needs a lock of yours.
 *
 * Failures. LATCHKEY_BAD_HASH and the codes behind it are written to the thread's error record
 * where the function gives a location number for them: read it with latchkey_error_read. The codes
 * before it tell of the call as such and write nothing, except that a failure of memory during an
 * operation is recorded as run-time fault 7. Operations on a latchkey_crypto clear the record
 * first.
 *
 * Bytes and text. Data and passwords are exact bytes: none is trimmed, added or converted. Input
 * is a pointer and a length; the pointer may be NULL when the length is 0. Text that the library
 * writes is UTF-8 and ends with a zero.
 *
 * Output. An output is a buffer and a pointer to a length in bytes, on entry the room in the
 * buffer and on return the length of the result; for text both count the zero at the end. The
 * length is always set. When the room is too small (LATCHKEY_BUFFER_TOO_SMALL) the length is the
 * room that is needed, and the buffer is cleared; with every other failure the length is 0 and the
 * buffer untouched. The buffer may be NULL when the room is 0. An output must not overlap an input
 * (LATCHKEY_BAD_ARGUMENT).
 *
 * Flags. An unknown flag gives LATCHKEY_BAD_FLAGS.
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
  LATCHKEY_BAD_HANDLE = 1,       /* no handle, a closed one, or one of another kind */
  LATCHKEY_BAD_ARGUMENT = 2,     /* a pointer or a number that the function does not take */
  LATCHKEY_BAD_FLAGS = 3,        /* an unknown flag */
  LATCHKEY_WRONG_THREAD = 4,     /* the handle belongs to another thread */
  LATCHKEY_NO_RECORD = 5,        /* no latchkey_thread is open on this thread */
  LATCHKEY_BUFFER_TOO_SMALL = 6, /* the length tells the room that is needed */
  LATCHKEY_NO_MEMORY = 7,
  LATCHKEY_BAD_HASH = 8,          /* the hash number */
  LATCHKEY_BAD_CIPHER = 9,        /* the cipher number, or the provider does not allow it */
  LATCHKEY_NO_PROVIDER = 10,      /* the cryptographic provider cannot be opened */
  LATCHKEY_KEY_FAILED = 11,       /* no key could be made from the password */
  LATCHKEY_CIPHER_FAILED = 12,    /* decrypting: a wrong password or setting, or damaged data */
  LATCHKEY_BAD_HEX = 13,          /* hexadecimal text of odd length */
  LATCHKEY_FAULT = 14,            /* a run-time fault; the record has its number */
  LATCHKEY_PROVIDER_REFUSED = 15, /* the provider gave no digest or no random bytes */
  LATCHKEY_STATUS_COUNT = 16      /* no status: every status is below it */
};

/* One line in English for a status; for a number that is no status "Unknown status". Never NULL;
 * the text lives as long as the library. */
LATCHKEY_C_API const char* latchkey_status_text(int status);

/* The library's version, as "1.0.0". Lives as long as the library. */
LATCHKEY_C_API const char* latchkey_version(void);

/* ---- A thread and its error record ---- */

typedef struct latchkey_thread latchkey_thread;

LATCHKEY_C_API int latchkey_thread_open(latchkey_thread** thread);
LATCHKEY_C_API int latchkey_thread_close(latchkey_thread* thread);

/* The numbers of the record. Clearing it leaves the location and both error numbers of the last
 * failure in place, so test error_exists first. */
typedef struct latchkey_error {
  int32_t error_exists;     /* 1 when a failure was recorded since the record was last cleared */
  int32_t error_type;       /* 1 run-time fault, 2 failure that the operation found itself */
  int32_t location_id;      /* 401 to 451 the operation with the fault, 700 to 761 the check */
  int32_t app_error_number; /* of the last failure found by an operation, 101 to 160 */
  int32_t rt_error_number;  /* of the last run-time fault, an Automation number */
  int32_t machine_state;    /* step of a multi-step operation, 0 for none */
} latchkey_error;

/* Reads the calling thread's record; all zeros when it fails. */
LATCHKEY_C_API int latchkey_error_read(const latchkey_thread* thread, latchkey_error* error);

/* The record's descriptions of what has app_error_number and of what has rt_error_number. */
LATCHKEY_C_API int latchkey_error_app_description(const latchkey_thread* thread, char* text,
                                                  size_t* text_length);
LATCHKEY_C_API int latchkey_error_rt_description(const latchkey_thread* thread, char* text,
                                                 size_t* text_length);

/* Sets *connected to 1 when the machine has an Internet connection configured, else to 0. Makes no
 * network traffic. A query that fails is recorded (location 419 or 420) and gives 0. */
LATCHKEY_C_API int latchkey_connection_exists(const latchkey_thread* thread, int32_t* connected);

/* ---- Elapsed time ---- */

typedef struct latchkey_timer latchkey_timer;

/* The timer measures from its opening, or from the last start. Needs no latchkey_thread. */
LATCHKEY_C_API int latchkey_timer_open(latchkey_timer** timer);
LATCHKEY_C_API int latchkey_timer_close(latchkey_timer* timer);
LATCHKEY_C_API int latchkey_timer_start(latchkey_timer* timer);

/* Milliseconds since the start mark; 0 once in 49.7 days, when the system's counter wraps. */
LATCHKEY_C_API int latchkey_timer_elapsed(latchkey_timer* timer, int32_t* milliseconds);

/* ---- Cryptography ----
 *
 * The algorithms are old: use them to exchange data with systems that already do. */

typedef struct latchkey_crypto latchkey_crypto;

LATCHKEY_C_API int latchkey_crypto_open(latchkey_crypto** crypto);
LATCHKEY_C_API int latchkey_crypto_close(latchkey_crypto* crypto);

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
  LATCHKEY_3DES = 4,    /* with LATCHKEY_ENHANCED only */
  LATCHKEY_3DES_112 = 5 /* two-key 3DES, with LATCHKEY_ENHANCED only */
};

enum latchkey_key_flags {
  LATCHKEY_ENHANCED = 1,        /* the enhanced provider: longer keys, and 3DES */
  LATCHKEY_DEFAULT_PASSWORD = 2 /* the library's built-in password; password_length must be 0 */
};

/* What a key is made from. It has no salt, so the same settings always give the same key. Set
 * unused members to 0. A password of length 0 without LATCHKEY_DEFAULT_PASSWORD is the empty one,
 * which is allowed. No member is kept after the call. */
typedef struct latchkey_key {
  uint32_t flags;
  int32_t hash;                /* LATCHKEY_MD5... */
  int32_t cipher;              /* LATCHKEY_RC4... */
  uint32_t rc2_effective_bits; /* 0, or for RC2: 40 reads data of Windows 2000 and before */
  const uint8_t* password;
  size_t password_length;
} latchkey_key;

/* Encrypt and decrypt exact bytes, any number below 4 GiB less 8. RC4 keeps the length. The block
 * ciphers (CBC, zero initialisation vector) pad to the next multiple of 8 above the input's length,
 * and their plaintext is shorter than the ciphertext by 1 to 8: with a room of input_length rounded
 * up like that, one call is enough. A wrong password goes unnoticed under RC4, and now and then
 * under the others. Fail with LATCHKEY_BAD_HASH, LATCHKEY_BAD_CIPHER, LATCHKEY_NO_PROVIDER,
 * LATCHKEY_KEY_FAILED, LATCHKEY_CIPHER_FAILED (encrypting: locations 718 to 724, decrypting: 711 to
 * 717), LATCHKEY_FAULT (438, 436; fault 6 for too long an input). */
LATCHKEY_C_API int latchkey_encrypt(latchkey_crypto* crypto, const latchkey_key* key,
                                    const uint8_t* input, size_t input_length, uint8_t* output,
                                    size_t* output_length);
LATCHKEY_C_API int latchkey_decrypt(latchkey_crypto* crypto, const latchkey_key* key,
                                    const uint8_t* input, size_t input_length, uint8_t* output,
                                    size_t* output_length);

/* The digest of exact bytes, any number below 4 GiB: 16 bytes, for LATCHKEY_SHA1 20. Fails with
 * LATCHKEY_BAD_HASH and LATCHKEY_PROVIDER_REFUSED (nothing recorded), LATCHKEY_NO_PROVIDER
 * (location 709), LATCHKEY_FAULT (432). */
LATCHKEY_C_API int latchkey_hash(latchkey_crypto* crypto, int32_t hash, const uint8_t* input,
                                 size_t input_length, uint8_t* digest, size_t* digest_length);

/* Fills `bytes` with random bytes. When it fails they are cleared: LATCHKEY_NO_PROVIDER (location
 * 710), LATCHKEY_PROVIDER_REFUSED, LATCHKEY_FAULT (433; fault 6 for 4 GiB and more). */
LATCHKEY_C_API int latchkey_random_bytes(latchkey_crypto* crypto, uint8_t* bytes, size_t length);

enum latchkey_random_flags {
  LATCHKEY_EXACT_LENGTH = 1, /* cut the result to `length` bytes */
  LATCHKEY_AS_HEX = 2        /* as hexadecimal digits, cut after the conversion */
};

/* CreateRandom of the component: `length` random bytes and what of its seed text is longer than
 * that, without spaces (20 hexadecimal) at either end. Use latchkey_random_bytes unless you need
 * just this. A result that found too little room is lost, and the next one may be longer: give
 * room for twice (`length` + 100). Fails as latchkey_random_bytes does; a negative length is
 * fault 5. */
LATCHKEY_C_API int latchkey_create_random(latchkey_crypto* crypto, uint32_t flags, int32_t length,
                                          uint8_t* output, size_t* output_length);

enum latchkey_salt_flags { LATCHKEY_LETTERS_ONLY = 1 /* A to Z and a to z */ };

/* CreateSaltValue of the component: `length` letters, or up to `length` random bytes without
 * spaces at either end. Fails as latchkey_create_random does, and with LATCHKEY_FAULT at location
 * 434. */
LATCHKEY_C_API int latchkey_create_salt(latchkey_crypto* crypto, uint32_t flags, int32_t length,
                                        uint8_t* output, size_t* output_length);

/* ---- Hexadecimal ----
 *
 * These need no handle, do not clear the record, and need one only to record a failure. */

/* Two upper-case digits for each byte. Fails with LATCHKEY_FAULT (location 441; fault 6 for more
 * digits than a 32-bit number counts). */
LATCHKEY_C_API int latchkey_hex_encode(const uint8_t* input, size_t input_length, char* text,
                                       size_t* text_length);

/* The byte of each pair of characters. A pair is read up to its first character that is no
 * hexadecimal digit, blanks apart; no digit gives 0. Fails with LATCHKEY_BAD_HEX (location 727) for
 * an odd text_length, which counts no zero at the end, and LATCHKEY_FAULT (440). */
LATCHKEY_C_API int latchkey_hex_decode(const char* text, size_t text_length, uint8_t* output,
                                       size_t* output_length);

#ifdef __cplusplus
}
#endif

/* NOLINTEND */

#endif /* LATCHKEY_H */
