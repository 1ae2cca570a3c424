#include "tests/support/raw_rc2.h"

#include "provider/portable/cipher.h"

namespace latchkey::test {

KeyLengths RawRc2KeyLengths() { return {1, 128}; }

Bytes EncryptRc2Block(const Bytes& key, unsigned effectiveBits, Bytes block) {
  const WipedBytes cipherKey(key.begin(), key.end());
  provider::CipherState state;
  provider::MakeCipher(provider::kAlgorithmRc2, cipherKey, effectiveBits)->Encrypt(block, state);
  return block;
}

}  // namespace latchkey::test
