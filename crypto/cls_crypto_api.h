// The component's cryptographic service object.
#pragma once

#include <cstdint>
#include <span>

#include "base/export.h"
#include "base/secure_memory.h"
#include "base/text.h"
#include "crypto/byte_array.h"
#include "crypto/provider_handles.h"
#include "platform/variant_text.h"

namespace latchkey {

enum class CipherDirection;
class WorkingText;

// Hashes text, encrypts and decrypts byte arrays under a key derived from a password, makes random
// data and salts, and converts between text, byte arrays and hexadecimal.
//
// The algorithms are old: use them to exchange data with systems that already do, not for new
// designs.
//
// Failures. An operation never raises an error of its own: it returns a failure value (false or
// empty text) and writes the thread's error record, which clsMain shows. The location and number
// of each failure stand beside the member; failure_table.h has their texts. Faults that pass to
// the caller are those of the property writes and of the two byte-array conversions, and
// ObjectNotSet (91) from every operation that touches the record on a thread without a clsMain; the
// four conversions do so only to record a failure. A failure of memory is recorded as run-time
// fault 7 at the operation's trap.
//
// Text and bytes. One character always stands for one byte, through the system's code page; on
// Linux that is 1252 unless SetCodePage (platform/set_code_page.h) chose another. Every byte
// becomes a character and back: one that is no character by itself (the first of a two-byte
// character, or a byte of UTF-8 above 127) is the character of the same number. A byte array made
// from text has one zero element more than the text has characters, and the last element of an
// array turned into text is ignored; trailing spaces are lost on the way into text.
//
// Random data on Windows. CreateRandom, each letter of CreateSaltValue and the random letters of
// CreateHash start from a seed text, made by one of ten formulas that the tick count chooses. One
// of them, taken one time in nine, adds the number of volume C, shifted left by 3 bits, to the tick
// count in 32 bits. Where that overflows, the operation fails: location 433 or 434, Overflow (6).
// Over the first 24.9 days that a machine runs the share of affected machines grows by 2 in 100 a
// day; it is a quarter on average. There one CreateRandom in nine fails, for days on end, and
// letters at least as often. Use raw salts (CreateSaltValue without blnLetttersOnly) or
// CreateRandom, and try again on 433 and 434: the next tick, 10 to 16 milliseconds later, takes
// another formula. CreateHash is affected only with the password appended, none stored and
// UseDefaultPWD false.
//
// The provider is opened by the first operation that needs it, kept, and closed with the object.
// An instance belongs to the thread that made it.
class LATCHKEY_API clsCryptoAPI {
 public:
  clsCryptoAPI();
  clsCryptoAPI(const clsCryptoAPI&) = delete;
  clsCryptoAPI& operator=(const clsCryptoAPI&) = delete;
  ~clsCryptoAPI();

  // Data to be encrypted or decrypted, converted as by ByteArrayToString. Raises what that raises;
  // the earlier data then stays. Never clears or writes the record.
  void InputData(const ByteArray& arInData);

  // A copy of the last result of Encrypt or Decrypt: the result bytes and one zero element.
  // Unallocated (for a COM client: a null array) before the first operation and after a failed
  // Encrypt; a single zero after a failed Decrypt. Never clears or writes the record.
  [[nodiscard]] ByteArray OutputData() const;

  // Whether the enhanced provider is to be opened and its ciphers (4 and 5) are allowed; false at
  // creation. Write only. A provider that is already open stays in use, so set it before the
  // object's first operation: on the base provider ciphers 4 and 5 fail with 723 or 716.
  void EnhancedProvider(bool blnUseEnhanced);

  // Stores a copy of an array whose upper bound is 1 or more, with its bounds, and erases the
  // caller's. Any other array is no password: the built-in default password is stored when
  // UseDefaultPWD is true, a single zero otherwise. The lower bound is not looked at: a password
  // without an element 0 is stored too, and the operations that use it record
  // SubscriptOutOfRange (9). The earlier password is discarded first, even when the array is then
  // refused with SubscriptOutOfRange: an unallocated one, or one of several dimensions.
  void Password(ByteArray& arPWord);

  // A copy of the stored password; a single zero stands for none.
  [[nodiscard]] ByteArray Password() const;

  // What to use when no password is stored: the built-in default password (true, as at creation),
  // or none for the ciphers and 20 random letters for CreateHash (false). Write only.
  void UseDefaultPWD(bool blnUseDefaultPWD);

  // The digest of strInText, which is hashed as it stands. intHashChoice: 1 MD5 (RFC 1321), 2 MD4
  // (RFC 1320), 3 MD2 (RFC 1319), each of 16 bytes, 4 SHA-1 (RFC 3174) of 20 bytes. With
  // blnConvertToHex the result is two upper-case hexadecimal digits for each byte, without it one
  // character for each byte, and then it loses trailing bytes of value 20 hexadecimal. With
  // blnAppendPassword the password is hashed behind the text. blnCaseSensitive changes nothing.
  // Empty text when it fails: location 709 without a provider, 432 for a run-time fault, 441 for
  // one in the conversion to hexadecimal, nothing recorded when the provider refuses (as it does
  // for an unknown hash number). Where random letters that are to be appended cannot be made, that
  // is recorded (434), and the text is hashed without them: test ErrorExists too when no password
  // is stored and UseDefaultPWD is false.
  [[nodiscard]] Text CreateHash(TextView strInText = {}, std::int16_t intHashChoice = 0,
                                bool blnConvertToHex = false, bool blnAppendPassword = false,
                                bool blnCaseSensitive = false);

  // Random text: lngDataLength random bytes as characters, followed by what of the seed text is
  // longer than that, without spaces at either end. The seed text is decimal digits made from the
  // clock and other readings of the machine, and is not secret. With blnConvertToHex the result is
  // two upper-case hexadecimal digits for each character; blnUseUppercase changes nothing.
  // blnRetExactLength cuts the result to lngDataLength characters (hexadecimal digits, when
  // converted).
  // Empty text when it fails: location 710 without a provider, 433 for a run-time fault such as a
  // negative length or the overflow that the class comment describes, 441 for one in the conversion
  // to hexadecimal, nothing recorded when the provider refuses.
  [[nodiscard]] Text CreateRandom(std::int32_t lngDataLength = 0, bool blnRetExactLength = false,
                                  bool blnConvertToHex = false, bool blnUseUppercase = false);

  // A salt of lngReturnLength characters: with blnLetttersOnly letters A to Z and a to z (d to i
  // twice as likely as the others), without it raw random characters without spaces at either end,
  // so sometimes fewer. Empty text when it fails: location 434 for a run-time fault such as a
  // negative length or the overflow that the class comment describes, or what CreateRandom records:
  // 710, 433. Letters can fail for days on some machines; prefer raw salts, tried again on 433.
  [[nodiscard]] Text CreateSaltValue(std::int32_t lngReturnLength = 0,
                                     bool blnLetttersOnly = false);

  // Decrypts InputData into OutputData under the stored password: what Encrypt made with the same
  // password, EnhancedProvider, intHashType and intCipherType. The whole input is processed in one
  // call. True when OutputData holds the plaintext; under RC4 that is so whatever the password was.
  // False when it fails: location 711 for a bad intHashType, 712 for a bad intCipherType, 713
  // without a provider, 714 to 716 in deriving the key, 717 when the cipher refuses the data, and
  // 436 or 435 for a run-time fault. Of several, the first is recorded.
  bool Decrypt(std::int16_t intHashType = 0, std::int16_t intCipherType = 0);

  // Encrypts InputData into OutputData under the stored password. intHashType is that of CreateHash
  // and makes the key from the password. intCipherType: 1 RC4, 2 RC2 (RFC 2268), 3 DES and, with
  // EnhancedProvider, 4 3DES and 5 two-key 3DES (FIPS 46-3), the block ciphers in CBC mode with a
  // zero initialisation vector and PKCS #5 padding (RFC 8018). The whole input is processed in one
  // call. True when OutputData holds the ciphertext: as many bytes as the input under RC4, else the
  // next multiple of 8 above that. False when it fails: location 718 for a bad intHashType, 719 for
  // a bad intCipherType, 720 without a provider, 721 to 723 in deriving the key, 724 when the
  // cipher refuses the data, as a block cipher does for fewer than 4 bytes, and 438 or 437 for a
  // run-time fault. Of several, the first is recorded.
  bool Encrypt(std::int16_t intHashType = 0, std::int16_t intCipherType = 0);

  // The characters of all elements but the last, without trailing spaces. Raises
  // SubscriptOutOfRange (9) for an array without an element 0 or of several dimensions. Never
  // clears or writes the record.
  [[nodiscard]] Text ByteArrayToString(const ByteArray& arByte) const;

  // The codes of the value's text and one zero element; a single zero for empty text. Raises
  // InvalidUseOfNull (94) for Null, TypeMismatch (13) for a value that has no text, Overflow (6)
  // for a character that the code page writes in several bytes. Never clears or writes the record.
  [[nodiscard]] ByteArray StringToByteArray(const Variant& varInput) const;

  // The text whose hexadecimal form is strHex, without trailing spaces. A pair is read up to its
  // first character that is no hexadecimal digit; no digit gives a NUL. Empty text when it fails:
  // location 727 for an odd length, 440 for a run-time fault. Does not clear the record.
  [[nodiscard]] Text ConvertStringFromHex(TextView strHex) const;

  // Two upper-case hexadecimal digits for each character of strInput, those of the low 8 bits of
  // its code; blnRetUppercase changes nothing. Empty text when it fails: location 441 for a
  // run-time fault. Does not clear the record.
  [[nodiscard]] Text ConvertStringToHex(TextView strInput, bool blnRetUppercase = false) const;

 private:
  // Opens the provider that blnEnhanced asks for. False when it cannot: location 728 or 729, 442
  // for a run-time fault.
  bool AcquireProvider();

  // True when the provider is open or could be opened.
  bool HaveProvider();

  // Sets both results from the hash number; 0 for an unknown one. Records nothing.
  static void GetHashAlgorithm(std::int16_t intHashType, std::int32_t& lngHashLength,
                               provider::AlgorithmId& lngAlgorithm);

  // Clears the record and sets the result from the cipher number; 0 for a rejected one, location
  // 725 or 726, 439 for a run-time fault.
  void GetCipherAlgorithm(std::int16_t intCipherType, provider::AlgorithmId& lngAlgorithm);

  // The built-in default password, or 20 fresh random letters.
  ByteArray BuildPassword(bool blnUseDefault);

  // Whether a password of at least two elements is stored.
  [[nodiscard]] bool HasPassword() const;

  // The password that CreateHash appends, as text bytes.
  WorkingText PasswordToAppend();

  // The password that a cipher key is derived from, as text bytes. Stores the default password
  // where it is used.
  WorkingText PasswordForKey();

  // ConvertStringToHex of text that is there as its bytes: sets `result`, or leaves it empty.
  static void ConvertCodesToHex(std::span<const std::uint8_t> codes, Text& result);

  // The body of Encrypt and Decrypt.
  bool TransformData(CipherDirection direction, std::int16_t intHashType,
                     std::int16_t intCipherType);

  bool blnEnhanced = false;
  bool blnBlockCipher = false;
  bool blnDefaultPWD = true;
  UniqueContext hCryptProv;
  WipedBytes strInData;  // text, as its code-page bytes
  ByteArray arOutData;
  ByteArray arPassword{0};
};

}  // namespace latchkey
