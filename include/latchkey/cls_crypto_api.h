// The component's cryptographic service object.
#pragma once

#include <cstdint>
#include <memory>

#include "latchkey/byte_array.h"
#include "latchkey/export.h"
#include "latchkey/types.h"

namespace latchkey {

struct CryptoApiState;

// Hashes text, encrypts and decrypts byte arrays under a key derived from a password, makes random
// data and salts, and converts between text, byte arrays and hexadecimal.
//
// The algorithms are old: use them to exchange data with systems that already use them, not for new
// designs.
//
// Failures. An operation that fails does not raise an error: it returns a failure value (false or
// empty text) and writes the thread's error record, which clsMain shows. Each member lists the
// locations and numbers of its failures; docs/errors.md has their texts. Only these faults reach
// the caller: faults of the property writes and of the two byte-array conversions, and ObjectNotSet
// (91) from an operation that uses the record on a thread without a clsMain. The four conversions
// use the record only if they fail. A failed allocation is recorded as run-time fault 7 at the
// operation's trap.
//
// Text and bytes. Each character corresponds to one byte of the system's code page; on Linux that
// is 1252 unless SetCodePage (latchkey/code_page.h) chose another. Every byte can be converted to a
// character and back: one that is not a character by itself (the first of a two-byte character, or
// a byte of UTF-8 above 127) becomes the character with the same number. A byte array made from
// text has one zero element after the characters, and a conversion to text ignores the last element
// of an array and removes trailing spaces.
//
// Random data on Windows. CreateRandom, each letter of CreateSaltValue and the random letters of
// CreateHash start from a seed text. The tick count selects one of ten formulas for it. One of
// them, used one time in nine, adds the number of volume C, shifted left by 3 bits, to the tick
// count in 32 bits. If that overflows, the operation fails: location 433 or 434, Overflow (6).
// During the first 24.9 days that a machine runs, the share of affected machines increases by 2 in
// 100 per day; on average it is a quarter. On these machines one CreateRandom in nine fails, for
// days, and letters fail at least as often. Use raw salts (CreateSaltValue without blnLetttersOnly)
// or CreateRandom, and try again on 433 and 434: the next tick, 10 to 16 milliseconds later, uses
// another formula. CreateHash is affected only if it appends the password, none is stored and
// UseDefaultPWD is false.
//
// The first operation that needs the provider opens it; it is closed with the object. Use an
// instance only on the thread that made it.
class LATCHKEY_API clsCryptoAPI {
 public:
  // Raises std::bad_alloc.
  clsCryptoAPI();
  clsCryptoAPI(const clsCryptoAPI&) = delete;
  clsCryptoAPI& operator=(const clsCryptoAPI&) = delete;
  ~clsCryptoAPI();

  // Data to be encrypted or decrypted, converted as by ByteArrayToString. Raises the same faults,
  // and then keeps the earlier data. Never clears or writes the record.
  void InputData(const ByteArray& arInData);

  // A copy of the last result of Encrypt or Decrypt: the result bytes and one zero element.
  // Unallocated (for a COM client: a null array) before the first operation and after a failed
  // Encrypt; a single zero after a failed Decrypt. Never clears or writes the record.
  [[nodiscard]] ByteArray OutputData() const;

  // Whether to open the enhanced provider and allow its ciphers (4 and 5); initially false. Write
  // only. A provider that is already open stays in use, so set this before the object's first
  // operation: on the base provider ciphers 4 and 5 fail with 723 or 716.
  void EnhancedProvider(bool blnUseEnhanced);

  // Stores a copy of an array whose upper bound is 1 or more, with its bounds, and erases the
  // caller's. Any other array counts as no password: the built-in default password is stored if
  // UseDefaultPWD is true, otherwise a single zero. The lower bound is not checked: a password
  // without an element 0 is stored too, and the operations that use it record SubscriptOutOfRange
  // (9). The earlier password is discarded first, even if the array is then refused: one that is
  // unallocated or has several dimensions raises SubscriptOutOfRange.
  void Password(ByteArray& arPWord);

  // A copy of the stored password; a single zero means none.
  [[nodiscard]] ByteArray Password() const;

  // What to use if no password is stored. True (the initial value): the built-in default password.
  // False: no password for the ciphers, 20 random letters for CreateHash. Write only.
  void UseDefaultPWD(bool blnUseDefaultPWD);

  // The digest of strInText, which is hashed unchanged. intHashChoice: 1 MD5 (RFC 1321), 2 MD4 (RFC
  // 1320), 3 MD2 (RFC 1319), each of 16 bytes, 4 SHA-1 (RFC 3174) of 20 bytes.
  //
  // With blnConvertToHex the result is two upper-case hexadecimal digits for each byte, otherwise
  // one character for each byte without trailing bytes of value 20 hexadecimal. With
  // blnAppendPassword the password is hashed after the text. blnCaseSensitive changes nothing.
  //
  // Empty text on failure: location 709 without a provider, 432 for a run-time fault, 441 for one
  // in the conversion to hexadecimal; nothing is recorded if the provider refuses (as it does for
  // an unknown hash number). If random letters are to be appended but cannot be made, that is
  // recorded (434) and the text is hashed without them: also test ErrorExists if no password is
  // stored and UseDefaultPWD is false.
  [[nodiscard]] Text CreateHash(TextView strInText = {}, std::int16_t intHashChoice = 0,
                                bool blnConvertToHex = false, bool blnAppendPassword = false,
                                bool blnCaseSensitive = false);

  // Random text: lngDataLength random bytes as characters, followed by the part of the seed text
  // beyond that length, without spaces at either end. The seed text is decimal digits made from the
  // clock and other readings of the machine, and is not secret. With blnConvertToHex the result is
  // two upper-case hexadecimal digits for each character; blnUseUppercase changes nothing.
  // blnRetExactLength cuts the result to lngDataLength characters (hexadecimal digits, if
  // converted).
  //
  // Empty text on failure: location 710 without a provider, 433 for a run-time fault such as a
  // negative length or the overflow that the class comment describes, 441 for one in the conversion
  // to hexadecimal; nothing is recorded if the provider refuses.
  [[nodiscard]] Text CreateRandom(std::int32_t lngDataLength = 0, bool blnRetExactLength = false,
                                  bool blnConvertToHex = false, bool blnUseUppercase = false);

  // A salt of lngReturnLength characters: with blnLetttersOnly letters A to Z and a to z (d to i
  // twice as likely as the others), otherwise raw random characters without spaces at either end,
  // so sometimes fewer. Empty text on failure: location 434 for a run-time fault such as a negative
  // length or the overflow that the class comment describes, or 710 or 433 from CreateRandom.
  // Letters can fail for days on some machines; prefer raw salts, and try again on 433.
  [[nodiscard]] Text CreateSaltValue(std::int32_t lngReturnLength = 0,
                                     bool blnLetttersOnly = false);

  // Decrypts InputData into OutputData with the stored password. Use the same password,
  // EnhancedProvider, intHashType and intCipherType as for Encrypt. The whole input is processed in
  // one call. True if OutputData holds the plaintext; RC4 returns true for any password.
  //
  // False on failure: location 711 for a bad intHashType, 712 for a bad intCipherType, 713 without
  // a provider, 714 to 716 in deriving the key, 717 if the cipher refuses the data, and 436 or 435
  // for a run-time fault. If several apply, the first is recorded.
  bool Decrypt(std::int16_t intHashType = 0, std::int16_t intCipherType = 0);

  // Encrypts InputData into OutputData with the stored password. intHashType is the hash that makes
  // the key from the password, numbered as in CreateHash.
  //
  // intCipherType: 1 RC4, 2 RC2 (RFC 2268), 3 DES and, with EnhancedProvider, 4 3DES and 5 two-key
  // 3DES (FIPS 46-3), the block ciphers in CBC mode with a zero initialization vector and PKCS #5
  // padding (RFC 8018). The whole input is processed in one call. True if OutputData holds the
  // ciphertext: the length of the input for RC4, otherwise the next multiple of 8 above that.
  //
  // False on failure: location 718 for a bad intHashType, 719 for a bad intCipherType, 720 without
  // a provider, 721 to 723 in deriving the key, 724 if the cipher refuses the data, as a block
  // cipher does for fewer than 4 bytes, and 438 or 437 for a run-time fault. If several apply, the
  // first is recorded.
  bool Encrypt(std::int16_t intHashType = 0, std::int16_t intCipherType = 0);

  // The characters of all elements but the last, without trailing spaces. Raises
  // SubscriptOutOfRange (9) for an array without an element 0 or of several dimensions. Never
  // clears or writes the record.
  [[nodiscard]] Text ByteArrayToString(const ByteArray& arByte) const;

  // The codes of the value's text, followed by one zero element; a single zero for empty text.
  // Raises InvalidUseOfNull (94) for Null, TypeMismatch (13) for a value without a text form,
  // Overflow (6) for a character that the code page writes in several bytes. Never clears or writes
  // the record.
  [[nodiscard]] ByteArray StringToByteArray(const Variant& varInput) const;

  // The text whose hexadecimal form is strHex, without trailing spaces. A pair is read up to its
  // first character that is not a hexadecimal digit; a pair without a digit gives a NUL. Empty text
  // on failure: location 727 for an odd length, 440 for a run-time fault. Does not clear the
  // record.
  [[nodiscard]] Text ConvertStringFromHex(TextView strHex) const;

  // Two upper-case hexadecimal digits for each character of strInput, from the low 8 bits of its
  // code; blnRetUppercase changes nothing. Empty text on failure: location 441 for a run-time
  // fault. Does not clear the record.
  [[nodiscard]] Text ConvertStringToHex(TextView strInput, bool blnRetUppercase = false) const;

 private:
  std::unique_ptr<CryptoApiState> state_;
};

}  // namespace latchkey
