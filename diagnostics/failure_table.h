// Every location number, error number and text that the component records, in one place.
//
// Locations 401 to 451 are the error traps of operations (ErrorType 1), one for each operation.
// Locations 700 to 761 are checks that the operations make themselves (ErrorType 2), one for each
// place that checks. Numbers 101 to 160 are the component's own error numbers: several locations
// may report the same number, and each number has one text. Numbers in these ranges that are not
// listed are never reported.
//
// GetCipherAlgorithm and AcquireProvider are inner steps: if one of them fails, the operation that
// called it records its own failure over theirs. RTErrorNumber and RTErrorDescription then still
// show a run-time fault of the inner step.
//
// Overflow (6) at 433 or 434 for a valid length happens only on Windows: one call in nine fails on
// machines whose volume number and uptime overflow one of the formulas of the seed text. Try again
// after a moment, and use raw salts or CreateRandom instead of letters. File not found (53) and
// Specified DLL function not found (453) at 419 mean that Windows lacks wininet.dll or the queried
// function.
#pragma once

#include <array>
#include <cstdint>

#include "latchkey/types.h"

namespace latchkey {

// Values of ErrorType.
inline constexpr std::int32_t kRunTimeFailure = 1;
inline constexpr std::int32_t kApplicationFailure = 2;

// The trap of an operation: the location that is recorded when a run-time fault reaches it.
struct TrapSite {
  std::int16_t location;
  TextView operation;
};

// A check in an operation: the values that are recorded when it fails.
struct CheckSite {
  std::int16_t location;
  std::int16_t number;
  TextView text;
  TextView operation;
};

namespace trap {
inline constexpr TrapSite kConnectionState{419, u"connection-state query"};
inline constexpr TrapSite kConnectionExists{420, u"connection-exists query"};
inline constexpr TrapSite kCreateHash{432, u"CreateHash"};
inline constexpr TrapSite kCreateRandom{433, u"CreateRandom"};
inline constexpr TrapSite kCreateSaltValue{434, u"CreateSaltValue"};
inline constexpr TrapSite kDecrypt{435, u"Decrypt"};
inline constexpr TrapSite kDecryptData{436, u"DecryptData"};
inline constexpr TrapSite kEncrypt{437, u"Encrypt"};
inline constexpr TrapSite kEncryptData{438, u"EncryptData"};
inline constexpr TrapSite kGetCipherAlgorithm{439, u"GetCipherAlgorithm"};
inline constexpr TrapSite kConvertStringFromHex{440, u"ConvertStringFromHex"};
inline constexpr TrapSite kConvertStringToHex{441, u"ConvertStringToHex"};
inline constexpr TrapSite kAcquireProvider{442, u"AcquireProvider"};
}  // namespace trap

namespace check {
inline constexpr CheckSite kHashProvider{709, 117, u"Error creating hash", u"CreateHash"};
inline constexpr CheckSite kRandomProvider{710, 114, u"Error acquiring provider", u"CreateRandom"};
inline constexpr CheckSite kDecryptHashType{711, 115, u"Bad hash type", u"Decrypt"};
inline constexpr CheckSite kDecryptCipherType{712, 116, u"Bad encryption type", u"Decrypt"};
inline constexpr CheckSite kDecryptProvider{713, 114, u"Error acquiring provider", u"Decrypt"};
inline constexpr CheckSite kDecryptHash{714, 117, u"Error creating hash", u"Decrypt"};
inline constexpr CheckSite kDecryptHashData{715, 118, u"Error creating hash data", u"Decrypt"};
inline constexpr CheckSite kDecryptKey{716, 119, u"Error deriving key", u"Decrypt"};
inline constexpr CheckSite kDecryptCipher{717, 120, u"Error decrypting data", u"Decrypt"};
inline constexpr CheckSite kEncryptHashType{718, 115, u"Bad hash type", u"Encrypt"};
inline constexpr CheckSite kEncryptCipherType{719, 121, u"Bad encryption type", u"Encrypt"};
inline constexpr CheckSite kEncryptProvider{720, 114, u"Error acquiring provider", u"Encrypt"};
inline constexpr CheckSite kEncryptHash{721, 117, u"Error creating hash", u"Encrypt"};
inline constexpr CheckSite kEncryptHashData{722, 118, u"Error creating hash data", u"Encrypt"};
inline constexpr CheckSite kEncryptKey{723, 119, u"Error deriving key", u"Encrypt"};
inline constexpr CheckSite kEncryptCipher{724, 122, u"Error encrypting data", u"Encrypt"};
inline constexpr CheckSite kEnhancedCipherType{725, 121, u"Bad encryption type",
                                               u"GetCipherAlgorithm"};
inline constexpr CheckSite kBaseCipherType{726, 121, u"Bad encryption type", u"GetCipherAlgorithm"};
inline constexpr CheckSite kHexLength{727, 123, u"Error converting data", u"ConvertStringFromHex"};
inline constexpr CheckSite kEnhancedProvider{728, 124, u"Error acquiring enhanced provider",
                                             u"AcquireProvider"};
inline constexpr CheckSite kStandardProvider{729, 125, u"Error acquiring standard provider",
                                             u"AcquireProvider"};
}  // namespace check

inline constexpr std::array kTrapSites{trap::kConnectionState,      trap::kConnectionExists,
                                       trap::kCreateHash,           trap::kCreateRandom,
                                       trap::kCreateSaltValue,      trap::kDecrypt,
                                       trap::kDecryptData,          trap::kEncrypt,
                                       trap::kEncryptData,          trap::kGetCipherAlgorithm,
                                       trap::kConvertStringFromHex, trap::kConvertStringToHex,
                                       trap::kAcquireProvider};

inline constexpr std::array kCheckSites{
    check::kHashProvider,      check::kRandomProvider,     check::kDecryptHashType,
    check::kDecryptCipherType, check::kDecryptProvider,    check::kDecryptHash,
    check::kDecryptHashData,   check::kDecryptKey,         check::kDecryptCipher,
    check::kEncryptHashType,   check::kEncryptCipherType,  check::kEncryptProvider,
    check::kEncryptHash,       check::kEncryptHashData,    check::kEncryptKey,
    check::kEncryptCipher,     check::kEnhancedCipherType, check::kBaseCipherType,
    check::kHexLength,         check::kEnhancedProvider,   check::kStandardProvider};

}  // namespace latchkey
