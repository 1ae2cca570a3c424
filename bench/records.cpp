// Records of 24 bytes under one key: Latchkey's C interface compared with a loop over OpenSSL's
// EVP, whose context has the key set.
//   record_bench [--json] [ROUNDS]
// Prints for each cipher and direction the median processor time of a record, the ratio of
// OpenSSL's loop to the batch, and its coefficient of variation. The contestants take turns, and a
// ratio is of one round, so that a change of the machine's speed is shared.
#include <latchkey.h>
#include <openssl/evp.h>
#include <openssl/provider.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

constexpr std::size_t kRecords = 100'000;
constexpr std::size_t kRecord = 24;  // bytes
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

// Records, and room for the results.
struct Column {
  // Makes records of kRecord bytes, or of 1 to 8 bytes fewer in random order.
  explicit Column(bool varies = false) {
    std::uint32_t chance = 1;
    for (std::size_t i = 0; i < kRecords; ++i) {
      chance = chance * 1664525 + 1013904223;  // any generator
      const std::size_t fewer = varies ? 1 + (chance >> 16) % 8 : 0;
      offsets.push_back(offsets.back() + static_cast<std::int64_t>(kRecord - fewer));
    }
    data.resize(static_cast<std::size_t>(offsets.back()));
  }

  [[nodiscard]] const std::uint8_t* At(std::size_t i) const { return data.data() + offsets[i]; }
  [[nodiscard]] std::size_t LengthAt(std::size_t i) const {
    return static_cast<std::size_t>(offsets[i + 1] - offsets[i]);
  }

  std::vector<std::int64_t> offsets{0};
  Bytes data;
  Bytes room = Bytes(kRecords * (kRecord + 8));
  std::vector<std::int64_t> resultOffsets = std::vector<std::int64_t>(kRecords + 1);
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
    Require(EVP_CipherUpdate(context, result, &length, column.At(i),
                             static_cast<int>(column.LengthAt(i))) == 1 &&
            EVP_CipherFinal_ex(context, result + length, &rest) == 1);
    column.resultOffsets[i + 1] = column.resultOffsets[i] + length + rest;
    result += length + rest;
  }
}

void LatchkeyCalls(const Key& key, bool encrypts, Column& column) {
  std::uint8_t* result = column.room.data();
  for (std::size_t i = 0; i < kRecords; ++i) {
    std::size_t length = column.LengthAt(i) + 8;
    Require((encrypts ? latchkey_encrypt : latchkey_decrypt)(key.Get(), column.At(i),
                                                             column.LengthAt(i), result, &length,
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

// The processor time of one pass in seconds: the mean over passes that together take at least 20
// ms.
double SecondsOf(const std::function<void()>& work) {
  const auto now = [] {
    timespec time{};
    Require(clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time) == 0);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9;
  };
  constexpr double kLeast = 0.02;
  const double start = now();
  int passes = 0;
  double taken = 0;
  for (; taken < kLeast; taken = now() - start, ++passes) work();
  return taken / passes;
}

double Median(std::vector<double> values) {
  std::ranges::sort(values);
  return values[values.size() / 2];
}

// The coefficient of variation.
double SpreadOf(const std::vector<double>& values) {
  double sum = 0;
  double squares = 0;
  for (const double value : values) {
    sum += value;
    squares += value * value;
  }
  const double mean = sum / static_cast<double>(values.size());
  return std::sqrt(std::max(0.0, squares / static_cast<double>(values.size()) - mean * mean)) /
         mean;
}

struct Row {
  const char* cipher;
  const char* direction;
  double openssl, call, batch;  // ns for a record
  double ratio, spread;
};

// Ciphertexts of kRecord bytes each, from the results in `plain`. Under block ciphers their
// plaintexts have 16 to 23 bytes.
Column CiphertextsOf(const Column& plain) {
  Column column;
  std::copy_n(plain.room.begin(), column.data.size(), column.data.begin());
  return column;
}

Row Compare(const Cipher& cipher, bool encrypts, int rounds) {
  const Key key(cipher);
  const Context fresh = EvpContext(cipher, encrypts);
  const Context context = EvpContext(cipher, encrypts);
  Column ours;
  Column theirs;
  if (!encrypts) {
    Column plain(cipher.number != LATCHKEY_RC4);
    LatchkeyBatch(key, true, plain);
    ours = CiphertextsOf(plain);
    EvpRecords(cipher, EvpContext(cipher, true).get(), EvpContext(cipher, true).get(), plain);
    theirs = CiphertextsOf(plain);
  }
  std::vector<double> openssl;
  std::vector<double> call;
  std::vector<double> batch;
  std::vector<double> ratio;
  for (int round = 0; round < rounds; ++round) {
    openssl.push_back(SecondsOf([&] { EvpRecords(cipher, context.get(), fresh.get(), theirs); }));
    call.push_back(SecondsOf([&] { LatchkeyCalls(key, encrypts, ours); }));
    batch.push_back(SecondsOf([&] { LatchkeyBatch(key, encrypts, ours); }));
    ratio.push_back(openssl.back() / batch.back());
  }
  constexpr double kNanoseconds = 1e9 / kRecords;
  return {cipher.name,
          encrypts ? "encryption" : "decryption",
          Median(openssl) * kNanoseconds,
          Median(call) * kNanoseconds,
          Median(batch) * kNanoseconds,
          Median(ratio),
          SpreadOf(ratio)};
}

void Print(const Row& row, bool asJson, bool isFirst) {
  if (asJson) {
    std::printf(
        "%s{\"cipher\": \"%s\", \"direction\": \"%s\", \"openssl\": %.2f, \"call\": %.2f, "
        "\"batch\": %.2f, \"ratio\": %.3f, \"spread\": %.4f}",
        isFirst ? "" : ",\n", row.cipher, row.direction, row.openssl, row.call, row.batch,
        row.ratio, row.spread);
    return;
  }
  std::printf("%-5s %-10s %8.0f %8.0f %8.0f %15.2f %6.0f%%\n", row.cipher, row.direction,
              row.openssl, row.call, row.batch, row.ratio, 100 * row.spread);
}

}  // namespace

int main(int count, char** arguments) {
  OSSL_PROVIDER_load(nullptr, "default");
  OSSL_PROVIDER_load(nullptr, "legacy");
  const bool asJson = count > 1 && std::string(arguments[1]) == "--json";
  const int given = asJson ? 2 : 1;
  const int rounds = count > given ? std::atoi(arguments[given]) : 15;
  if (asJson) {
    std::printf("{\"rounds\": %d, \"rows\": [\n", rounds);
  } else {
    std::printf("ns of processor time for a record of %zu bytes, median of %d rounds\n", kRecord,
                rounds);
    std::printf("%-5s %-10s %8s %8s %8s %15s %7s\n", "", "", "openssl", "call", "batch",
                "openssl/batch", "spread");
  }
  bool isFirst = true;
  for (const Cipher& cipher : kCiphers) {
    for (const bool encrypts : {false, true}) {
      Print(Compare(cipher, encrypts, rounds), asJson, isFirst);
      isFirst = false;
    }
  }
  if (asJson) std::printf("\n]}\n");
  return EXIT_SUCCESS;
}
