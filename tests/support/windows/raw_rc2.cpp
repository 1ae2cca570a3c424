#include "tests/support/raw_rc2.h"

#include <windows.h>

#include <wincrypt.h>

#include <cstring>
#include <stdexcept>

namespace latchkey::test {
namespace {

void Require(BOOL succeeded) {
  if (!succeeded) throw std::runtime_error("RC2 with a raw key failed");
}

// A key in the form that CryptImportKey reads: header, length, bytes.
Bytes PlaintextKeyBlob(const Bytes& key) {
  const BLOBHEADER header{PLAINTEXTKEYBLOB, CUR_BLOB_VERSION, 0, CALG_RC2};
  const auto length = static_cast<DWORD>(key.size());
  Bytes blob(sizeof header + sizeof length);
  std::memcpy(blob.data(), &header, sizeof header);
  std::memcpy(blob.data() + sizeof header, &length, sizeof length);
  blob.insert(blob.end(), key.begin(), key.end());
  return blob;
}

}  // namespace

KeyLengths RawRc2KeyLengths() { return {5, 16}; }

Bytes EncryptRc2Block(const Bytes& key, unsigned effectiveBits, Bytes block) {
  HCRYPTPROV provider = 0;
  Require(CryptAcquireContextA(&provider, nullptr, MS_ENHANCED_PROV_A, PROV_RSA_FULL,
                               CRYPT_VERIFYCONTEXT));
  const Bytes blob = PlaintextKeyBlob(key);
  HCRYPTKEY handle = 0;
  Require(CryptImportKey(provider, blob.data(), static_cast<DWORD>(blob.size()), 0, 0, &handle));
  const DWORD bits = effectiveBits;
  Require(CryptSetKeyParam(handle, KP_EFFECTIVE_KEYLEN, reinterpret_cast<const BYTE*>(&bits), 0));
  auto length = static_cast<DWORD>(block.size());
  Require(CryptEncrypt(handle, 0, FALSE, 0, block.data(), &length, length));
  Require(CryptReleaseContext(provider, 0));
  return block;
}

}  // namespace latchkey::test
