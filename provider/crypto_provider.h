// The interface of the cryptographic provider: CryptoAPI's functions with their own names and
// meanings.
//
// The Windows implementation passes every call to advapi32. The Linux implementation gives the same
// results with GNU Nettle: the same key derivation, padding, lengths and error codes. Tests replace
// it with a provider in which any single call can fail.
//
// CryptoAPI's conventions for every implementation:
// - A function returns true for success. On failure GetLastError() has the reason, and output
//   parameters are unchanged unless the function says otherwise.
// - A handle of 0 is invalid. A released or unknown handle gives kErrorInvalidParameter.
// - Lengths are in bytes. A data pointer may be null if its length is 0.
// - Several threads may use a provider at once, but a handle only one thread at a time.
#pragma once

#include <cstdint>
#include <memory>
#include <span>

namespace latchkey::provider {

// Handles have the width of the platform's pointers.
using HCRYPTPROV = std::uintptr_t;
using HCRYPTHASH = std::uintptr_t;
using HCRYPTKEY = std::uintptr_t;
using AlgorithmId = std::uint32_t;

inline constexpr AlgorithmId kAlgorithmNone = 0;
inline constexpr AlgorithmId kAlgorithmMd2 = 0x8001;
inline constexpr AlgorithmId kAlgorithmMd4 = 0x8002;
inline constexpr AlgorithmId kAlgorithmMd5 = 0x8003;
inline constexpr AlgorithmId kAlgorithmSha1 = 0x8004;
inline constexpr AlgorithmId kAlgorithmDes = 0x6601;
inline constexpr AlgorithmId kAlgorithmRc2 = 0x6602;
inline constexpr AlgorithmId kAlgorithm3Des = 0x6603;
inline constexpr AlgorithmId kAlgorithm3Des112 = 0x6609;
inline constexpr AlgorithmId kAlgorithmRc4 = 0x6801;

inline constexpr std::uint32_t kProviderTypeRsaFull = 1;
inline constexpr std::uint32_t kVerifyContext = 0xF0000000;
inline constexpr std::uint32_t kNewKeySet = 0x00000008;
inline constexpr std::uint32_t kDeleteKeySet = 0x00000010;
inline constexpr std::uint32_t kHashValueParameter = 2;
inline constexpr std::uint32_t kEffectiveKeyLengthParameter = 19;
inline constexpr unsigned kKeyLengthShift =
    16;  // a key's length in bits, in CryptDeriveKey's flags

inline constexpr const char* kEnhancedProviderName =
    "Microsoft Enhanced Cryptographic Provider v1.0";
inline constexpr const char* kBaseProviderName = "Microsoft Base Cryptographic Provider v1.0";

// Codes of GetLastError after provider calls.
inline constexpr std::uint32_t kErrorInvalidParameter = 87;
inline constexpr std::uint32_t kErrorMoreData = 234;
inline constexpr std::uint32_t kErrorBadData = 0x80090005;
inline constexpr std::uint32_t kErrorBadAlgorithm = 0x80090008;
inline constexpr std::uint32_t kErrorBadFlags = 0x80090009;
inline constexpr std::uint32_t kErrorBadType = 0x8009000A;
inline constexpr std::uint32_t kErrorBadHashState = 0x8009000C;
inline constexpr std::uint32_t kErrorExists = 0x8009000F;
inline constexpr std::uint32_t kErrorBadKeySet = 0x80090016;
inline constexpr std::uint32_t kErrorKeysetNotDefined = 0x80090019;
inline constexpr std::uint32_t kErrorProviderTypeMismatch = 0x8009001B;
inline constexpr std::uint32_t kErrorProviderFailed = 0x8009001D;

// Messages of one key in one buffer, one after another. Each length with its padding fits 32 bits.
struct MessageBatch {
  std::span<const std::uint8_t> messages;
  std::span<std::uint32_t> lengths;  // of the messages, and on return of the results
  std::span<std::uint8_t> results;   // one after another; must not overlap the messages
  std::span<bool> failed;            // set for each message
};

// A key for whole messages. Any number of threads may use it at once.
class MessageKey {
 public:
  MessageKey() = default;
  MessageKey(const MessageKey&) = delete;
  MessageKey& operator=(const MessageKey&) = delete;
  virtual ~MessageKey() = default;

  // As CryptEncrypt and CryptDecrypt with Final, each call from the key's initial state.
  virtual bool Encrypt(std::uint8_t* pbData, std::uint32_t* pdwDataLen,
                       std::uint32_t dwBufLen) const = 0;
  virtual bool Decrypt(std::uint8_t* pbData, std::uint32_t* pdwDataLen) const = 0;

  // Encrypt or decrypt each message of a batch. `results` must have room for all ciphertexts, in
  // decryption too; the bytes after the results are undefined. A message that fails has a result of
  // length 0.
  virtual void EncryptEach(const MessageBatch& batch) const;
  virtual void DecryptEach(const MessageBatch& batch) const;

  // As CryptDuplicateKey: a session key in the initial state, which belongs to the caller.
  virtual bool Duplicate(HCRYPTKEY* phKey) const = 0;
};

class CryptoProvider {
 public:
  CryptoProvider() = default;
  CryptoProvider(const CryptoProvider&) = delete;
  CryptoProvider& operator=(const CryptoProvider&) = delete;
  virtual ~CryptoProvider() = default;

  // Opens a provider by name (an empty name opens the default one). The container name is always
  // empty here. kVerifyContext opens without a key set; kNewKeySet makes the default-named key set
  // and fails with kErrorExists if it exists; kDeleteKeySet removes it, opens nothing, and fails
  // with kErrorBadKeySet if it does not exist. On Linux that key set lives as long as the process.
  virtual bool CryptAcquireContextA(HCRYPTPROV* phProv, const char* szContainer,
                                    const char* szProvider, std::uint32_t dwProvType,
                                    std::uint32_t dwFlags) = 0;

  // Closes the provider; its hashes and keys become unknown.
  virtual bool CryptReleaseContext(HCRYPTPROV hProv, std::uint32_t dwFlags) = 0;

  // Makes an empty hash object; an unknown algorithm gives kErrorBadAlgorithm. hKey is always 0.
  virtual bool CryptCreateHash(HCRYPTPROV hProv, AlgorithmId Algid, HCRYPTKEY hKey,
                               std::uint32_t dwFlags, HCRYPTHASH* phHash) = 0;

  // Adds data. Fails with kErrorBadHashState after the value was read or a key was derived.
  virtual bool CryptHashData(HCRYPTHASH hHash, const std::uint8_t* pbData, std::uint32_t dwDataLen,
                             std::uint32_t dwFlags) = 0;

  // Completes the hash and reads its value (kHashValueParameter). *pdwDataLen is the size of the
  // buffer on entry and of the value on return; too small a buffer gives kErrorMoreData, but also
  // completes the hash.
  virtual bool CryptGetHashParam(HCRYPTHASH hHash, std::uint32_t dwParam, std::uint8_t* pbData,
                                 std::uint32_t* pdwDataLen, std::uint32_t dwFlags) = 0;
  virtual bool CryptDestroyHash(HCRYPTHASH hHash) = 0;

  // Completes the hash and derives a session key from it. The upper 16 bits of dwFlags are the
  // key's length in bits, 0 for the provider's default; the lower ones are 0. RC4 and RC2 have
  // lengths from 40 to 56, with the enhanced provider to 128, in steps of 8, and 11 zero bytes of
  // salt after a key of exactly 40 bits. Another length gives kErrorBadData. What a length does
  // for another cipher depends on the provider.
  virtual bool CryptDeriveKey(HCRYPTPROV hProv, AlgorithmId Algid, HCRYPTHASH hBaseData,
                              std::uint32_t dwFlags, HCRYPTKEY* phKey) = 0;
  virtual bool CryptDestroyKey(HCRYPTKEY hKey) = 0;

  // Makes a key with the same state as hKey. The other parameters are 0.
  virtual bool CryptDuplicateKey(HCRYPTKEY hKey, std::uint32_t* pdwReserved, std::uint32_t dwFlags,
                                 HCRYPTKEY* phKey) = 0;

  // Sets RC2's effective key length (kEffectiveKeyLengthParameter), a 32-bit number of bits at
  // pbData, and resets the key to its initial state. Another cipher or parameter gives
  // kErrorBadType; a length outside 1 to 1024, or other than 40 with the base provider, gives
  // kErrorBadData.
  virtual bool CryptSetKeyParam(HCRYPTKEY hKey, std::uint32_t dwParam, const std::uint8_t* pbData,
                                std::uint32_t dwFlags) = 0;

  // Encrypts in place. *pdwDataLen is the plaintext length on entry and the ciphertext length on
  // return; dwBufLen is the size of the buffer at pbData. With Final, a block cipher pads as in
  // PKCS #5; if the padded length exceeds dwBufLen, the call fails with kErrorMoreData and
  // *pdwDataLen is the needed length. Without Final, a block cipher requires whole blocks (else
  // kErrorBadData) and the next call continues from there; a final call resets the key to its
  // initial state.
  virtual bool CryptEncrypt(HCRYPTKEY hKey, HCRYPTHASH hHash, bool Final, std::uint32_t dwFlags,
                            std::uint8_t* pbData, std::uint32_t* pdwDataLen,
                            std::uint32_t dwBufLen) = 0;

  // Decrypts in place. For a block cipher, a length that is not a multiple of 8, a length of 0 with
  // Final, or bad padding gives kErrorBadData and leaves *pdwDataLen unchanged. Encrypting and
  // decrypting with one key share its state between calls.
  virtual bool CryptDecrypt(HCRYPTKEY hKey, HCRYPTHASH hHash, bool Final, std::uint32_t dwFlags,
                            std::uint8_t* pbData, std::uint32_t* pdwDataLen) = 0;

  // Overwrites dwLen bytes at pbBuffer with random bytes; the old contents are additional seed.
  virtual bool CryptGenRandom(HCRYPTPROV hProv, std::uint32_t dwLen, std::uint8_t* pbBuffer) = 0;

  // The code of the calling thread's last failure.
  [[nodiscard]] virtual std::uint32_t GetLastError() const = 0;

  // Makes a key that threads can share, which CryptoAPI does not offer. hKey must be in its initial
  // state, must not be used afterwards, still belongs to the caller and must outlive the result.
  // The default implementation works on duplicates of hKey; a provider may have a faster one.
  [[nodiscard]] virtual std::unique_ptr<const MessageKey> MakeMessageKey(HCRYPTKEY hKey);
};

// The platform's provider. Lives as long as the process.
CryptoProvider& SystemCryptoProvider();

// The provider of what threads share: the platform's, unless a test has replaced it.
CryptoProvider& SharedCryptoProvider();

// For tests, while no other thread uses it. Null means the platform's.
void ReplaceSharedCryptoProvider(CryptoProvider* provider) noexcept;

}  // namespace latchkey::provider
