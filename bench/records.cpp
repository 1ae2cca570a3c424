// Short records under one key: Latchkey's C interface next to a loop over OpenSSL's EVP with a
// ready context.
//   record_bench [ROUNDS]   prints the median time of a record and the ratio for each cipher; the
//                           contestants take turns, so that a change of the machine's speed is
//                           shared
#include <latchkey.h>
#include <openssl/evp.h>
#include <openssl/provider.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

constexpr std::size_t kRecords = 100'000;
constexpr std::size_t kRecord = 24;  // bytes of a record and, under RC4, of its ciphertext
// Under the other ciphers, a plaintext of this length has a ciphertext of kRecord bytes.
constexpr std::size_t kPlaintext = 20;
constexpr std::array<std::uint8_t, 5> kPassword{'b', 'e', 'n', 'c', 'h'};

using Bytes = std::vector<std::uint8_t>;

void Require(bool done) {
  if (!done) throw std::runtime_error("a call failed");
}

struct Cipher {
  const char* name;
  std::int32_t number;
  const char* evpName;
  std::size_t keyBytes;
};

constexpr std::array kCiphers{
    Cipher{"rc4", LATCHKEY_RC4, "RC4", 16}, Cipher{"rc2", LATCHKEY_RC2, "RC2-CBC", 16},
    Cipher{"des", LATCHKEY_DES, "DES-CBC", 8}, Cipher{"3des", LATCHKEY_3DES, "DES-EDE3-CBC", 24}};

// Records of one length, and room for the results.
struct Column {
  explicit Column(std::size_t recordLength)
      : length(recordLength), data(kRecords * recordLength), room(kRecords * (recordLength + 8)) {
    for (std::size_t i = 0; i <= kRecords; ++i) {
      offsets.push_back(static_cast<std::int64_t>(i * length));
    }
    resultOffsets.resize(offsets.size());
  }

  std::size_t length;
  Bytes data;
  std::vector<std::int64_t> offsets;
  Bytes room;
  std::vector<std::int64_t> resultOffsets;
};

class Key {
 public:
  explicit Key(const Cipher& cipher) {
    latchkey_settings settings = LATCHKEY_SETTINGS_INIT;
    settings.hash = LATCHKEY_MD5;
    settings.cipher = cipher.number;
    settings.provider = LATCHKEY_ENHANCED;
    Require(latchkey_key_open(&settings, kPassword.data(), kPassword.size(), &key_, nullptr) ==
            LATCHKEY_OK);
  }
  Key(const Key&) = delete;
  Key& operator=(const Key&) = delete;
  ~Key() { latchkey_key_close(key_); }

  [[nodiscard]] const latchkey_key* Get() const { return key_; }

 private:
  latchkey_key* key_ = nullptr;
};

// OpenSSL's key. It is not derived from kPassword: the time does not depend on the bytes.
constexpr std::array<std::uint8_t, 24> kEvpKey{0x01, 0x23, 0x45, 0x67, 0x89, 0xAB, 0xCD, 0xEF,
                                               0x13, 0x57, 0x9B, 0xDF, 0x02, 0x46, 0x8A, 0xCE,
                                               0xFE, 0xDC, 0xBA, 0x98, 0x76, 0x54, 0x32, 0x10};

using Context = std::unique_ptr<EVP_CIPHER_CTX, decltype(&EVP_CIPHER_CTX_free)>;

Context EvpContext(const Cipher& cipher, bool encrypts) {
  EVP_CIPHER* const fetched = EVP_CIPHER_fetch(nullptr, cipher.evpName, nullptr);
  Context context(EVP_CIPHER_CTX_new(), EVP_CIPHER_CTX_free);
  Require(EVP_CipherInit_ex2(context.get(), fetched, kEvpKey.data(), Bytes(8).data(),
                             encrypts ? 1 : 0, nullptr) == 1);
  EVP_CIPHER_free(fetched);
  return context;
}

// A block cipher restarts with its initialization vector. RC4's state is the key stream, so an
// unused context is copied.
void EvpRestart(const Cipher& cipher, EVP_CIPHER_CTX* context, const EVP_CIPHER_CTX* fresh) {
  static constexpr std::array<std::uint8_t, 8> kZeros{};
  Require(cipher.number == LATCHKEY_RC4
              ? EVP_CIPHER_CTX_copy(context, fresh) == 1
              : EVP_CipherInit_ex2(context, nullptr, nullptr, kZeros.data(), -1, nullptr) == 1);
}

void EvpRecords(const Cipher& cipher, EVP_CIPHER_CTX* context, const EVP_CIPHER_CTX* fresh,
                Column& column) {
  std::uint8_t* result = column.room.data();
  for (std::size_t i = 0; i < kRecords; ++i) {
    int length = 0;
    int rest = 0;
    EvpRestart(cipher, context, fresh);
    Require(EVP_CipherUpdate(context, result, &length, column.data.data() + i * column.length,
                             static_cast<int>(column.length)) == 1 &&
            EVP_CipherFinal_ex(context, result + length, &rest) == 1);
    column.resultOffsets[i + 1] = column.resultOffsets[i] + length + rest;
    result += length + rest;
  }
}

void LatchkeyCalls(const Key& key, bool encrypts, Column& column) {
  std::uint8_t* result = column.room.data();
  for (std::size_t i = 0; i < kRecords; ++i) {
    std::size_t length = column.length + 8;
    Require((encrypts ? latchkey_encrypt : latchkey_decrypt)(
                key.Get(), column.data.data() + i * column.length, column.length, result, &length,
                nullptr) == LATCHKEY_OK);
    column.resultOffsets[i + 1] = column.resultOffsets[i] + static_cast<std::int64_t>(length);
    result += length;
  }
}

void LatchkeyBatch(const Key& key, bool encrypts, Column& column) {
  const latchkey_records records{
      sizeof(latchkey_records), 8, kRecords, column.offsets.data(), column.data.data(),
      column.data.size()};
  latchkey_results results{sizeof(latchkey_results),
                           8,
                           column.resultOffsets.data(),
                           column.room.data(),
                           column.room.size(),
                           nullptr,
                           0};
  Require((encrypts ? latchkey_encrypt_records : latchkey_decrypt_records)(
              key.Get(), &records, 1, &results, nullptr) == LATCHKEY_OK &&
          results.failed == 0);
}

double SecondsOf(const std::function<void()>& work) {
  const auto start = std::chrono::steady_clock::now();
  work();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

double Median(std::vector<double> values) {
  std::ranges::sort(values);
  return values[values.size() / 2];
}

// Fills the columns with ciphertexts of the same plaintexts under either key.
void Compare(const Cipher& cipher, bool encrypts, int rounds) {
  const Key key(cipher);
  const std::size_t plaintext = cipher.number == LATCHKEY_RC4 ? kRecord : kPlaintext;
  const Context encryption = EvpContext(cipher, true);
  const Context working = EvpContext(cipher, true);
  Column plain(plaintext);
  Column ours(encrypts ? plaintext : kRecord);
  Column theirs(encrypts ? plaintext : kRecord);
  if (!encrypts) {
    LatchkeyBatch(key, true, plain);
    std::copy_n(plain.room.begin(), ours.data.size(), ours.data.begin());
    EvpRecords(cipher, working.get(), encryption.get(), plain);
    std::copy_n(plain.room.begin(), theirs.data.size(), theirs.data.begin());
  }
  const Context fresh = EvpContext(cipher, encrypts);
  const Context context = EvpContext(cipher, encrypts);
  std::array<std::vector<double>, 3> seconds;
  for (int round = 0; round < rounds; ++round) {
    seconds[0].push_back(
        SecondsOf([&] { EvpRecords(cipher, context.get(), fresh.get(), theirs); }));
    seconds[1].push_back(SecondsOf([&] { LatchkeyCalls(key, encrypts, ours); }));
    seconds[2].push_back(SecondsOf([&] { LatchkeyBatch(key, encrypts, ours); }));
  }
  std::array<double, 3> ns{};
  for (std::size_t i = 0; i < ns.size(); ++i) ns[i] = Median(seconds[i]) / kRecords * 1e9;
  std::printf("%-5s %-8s %8.0f %8.0f %8.0f   %5.2f %8.2f\n", cipher.name,
              encrypts ? "encrypt" : "decrypt", ns[0], ns[1], ns[2], ns[1] / ns[0], ns[0] / ns[2]);
}

}  // namespace

int main(int count, char** arguments) {
  OSSL_PROVIDER_load(nullptr, "default");
  OSSL_PROVIDER_load(nullptr, "legacy");
  const int rounds = count > 1 ? std::atoi(arguments[1]) : 15;
  std::printf("ns for a ciphertext of %zu bytes, median of %d rounds\n", kRecord, rounds);
  std::printf("%-5s %-8s %8s %8s %8s   %s\n", "", "", "openssl", "call", "batch",
              "call/openssl openssl/batch");
  for (const Cipher& cipher : kCiphers) {
    for (const bool encrypts : {false, true}) Compare(cipher, encrypts, rounds);
  }
  return EXIT_SUCCESS;
}
