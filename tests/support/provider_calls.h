// The provider calls that most tests expect, with their constant arguments.
#pragma once

#include <gmock/gmock.h>

#include "tests/support/call_journal.h"

namespace latchkey::test::calls {

// Hashes and keys are made in the first context.
inline Call CreateHash(std::uint32_t algorithm) {
  return {"CryptCreateHash", ContextNo(1), algorithm, kNoHandle, 0};
}
inline Call HashData(int hash, const Bytes& data) {
  return {"CryptHashData", HashNo(hash), data, static_cast<int>(data.size()), 0};
}
inline Call GetDigest(int hash, int length) {
  return {"CryptGetHashParam", HashNo(hash), 2, length, 0};
}
inline Call DestroyHash(int hash) { return {"CryptDestroyHash", HashNo(hash)}; }
inline Call DeriveKey(std::uint32_t algorithm, int hash) {
  return {"CryptDeriveKey", ContextNo(1), algorithm, HashNo(hash), 0};
}
inline Call DestroyKey(int key) { return {"CryptDestroyKey", KeyNo(key)}; }
// The buffer has twice the length of the data.
inline Call Encrypt(int key, const Bytes& data) {
  const int length = static_cast<int>(data.size());
  return {"CryptEncrypt", KeyNo(key), kNoHandle, true, 0, data, length, 2 * length};
}
inline Call Decrypt(int key, const Bytes& data) {
  return {"CryptDecrypt", KeyNo(key), kNoHandle, true, 0, data, static_cast<int>(data.size())};
}
inline Call GenRandom(const Bytes& offered) {
  return {"CryptGenRandom", ContextNo(1), static_cast<int>(offered.size()), offered};
}
inline Call ReleaseContext(int context) { return {"CryptReleaseContext", ContextNo(context), 0}; }

// Any call of this name.
inline auto Any(const char* name) { return testing::Field("name", &Call::name, name); }

}  // namespace latchkey::test::calls
