// Encrypt and Decrypt as rows of a table: the same tests run over both.
#pragma once

#include <cstdint>
#include <ostream>
#include <string>
#include <tuple>

#include "latchkey/cls_crypto_api.h"
#include "tests/support/bytes.h"

namespace latchkey::test {

// The report of a failed step.
struct ReportedFailure {
  std::int16_t location;
  std::int16_t number;
  std::string text;
};

struct DirectionRow {
  const char* name;
  bool (clsCryptoAPI::*operation)(std::int16_t intHashType, std::int16_t intCipherType);
  const char* cipherCall;
  ReportedFailure hashType;
  ReportedFailure cipherType;
  ReportedFailure provider;
  ReportedFailure hash;
  ReportedFailure hashData;
  ReportedFailure key;
  ReportedFailure cipher;
  std::int16_t shellTrap;
  std::int16_t bodyTrap;
  Bytes outputAfterFailure;

  friend void PrintTo(const DirectionRow& row, std::ostream* out) { *out << row.name; }
};

inline const DirectionRow kEncryptRow{"Encrypt",
                                      &clsCryptoAPI::Encrypt,
                                      "CryptEncrypt",
                                      {718, 115, "Bad hash type"},
                                      {719, 121, "Bad encryption type"},
                                      {720, 114, "Error acquiring provider"},
                                      {721, 117, "Error creating hash"},
                                      {722, 118, "Error creating hash data"},
                                      {723, 119, "Error deriving key"},
                                      {724, 122, "Error encrypting data"},
                                      437,
                                      438,
                                      {}};

inline const DirectionRow kDecryptRow{"Decrypt",
                                      &clsCryptoAPI::Decrypt,
                                      "CryptDecrypt",
                                      {711, 115, "Bad hash type"},
                                      {712, 116, "Bad encryption type"},
                                      {713, 114, "Error acquiring provider"},
                                      {714, 117, "Error creating hash"},
                                      {715, 118, "Error creating hash data"},
                                      {716, 119, "Error deriving key"},
                                      {717, 120, "Error decrypting data"},
                                      435,
                                      436,
                                      {0}};

// A direction, and whether to use the enhanced provider.
using DirectionOnProvider = std::tuple<DirectionRow, bool>;

inline std::string NameOf(const DirectionOnProvider& parameter) {
  return std::string(std::get<0>(parameter).name) + (std::get<1>(parameter) ? "Enhanced" : "Base");
}

}  // namespace latchkey::test
