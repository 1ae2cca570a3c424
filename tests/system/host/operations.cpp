#include "tests/system/host/operations.h"

#include <latchkey.h>
#include <latchkey/cls_crypto_api.h>
#include <latchkey/cls_main.h>
#include <latchkey/code_page.h>
#include <latchkey/fault.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <stdexcept>

namespace latchkey::test {
namespace {

using Bytes = std::vector<std::uint8_t>;

// Few enough for one block, for part of a batch of the widest kernels, and for more than one.
constexpr std::array<std::size_t, 3> kLengths{8, 4000, 10'000};
constexpr std::int16_t kHashes = 4;
constexpr std::int16_t kCiphers = 5;

void Require(bool condition) {
  if (!condition) throw std::runtime_error("the call did not end as it should");
}

// The thread's record and a service object, on the enhanced provider.
struct Service {
  Service() { api.EnhancedProvider(true); }

  clsMain main;
  clsCryptoAPI api;
};

ByteArray ArrayOf(clsCryptoAPI& api, std::size_t length) {
  const Text text(length, u'x');
  return api.StringToByteArray(TextView(text));
}

void RoundTrip(std::int16_t hash, std::int16_t cipher, std::size_t length) {
  Service service;
  service.api.InputData(ArrayOf(service.api, length));
  Require(service.api.Encrypt(hash, cipher));
  service.api.InputData(service.api.OutputData());
  Require(service.api.Decrypt(hash, cipher));
}

void DecryptUnderAnotherKey(std::int16_t cipher) {
  Service service;
  service.api.InputData(ArrayOf(service.api, 8));
  Require(service.api.Encrypt(1, cipher));
  service.api.InputData(service.api.OutputData());
  static_cast<void>(service.api.Decrypt(2, cipher));
}

// The same through the C interface. The key is closed with the scope.
struct CKey {
  CKey(std::int32_t hash, std::int32_t cipher) {
    latchkey_settings settings = LATCHKEY_SETTINGS_INIT;
    settings.hash = hash;
    settings.cipher = cipher;
    settings.provider = LATCHKEY_ENHANCED;
    Require(latchkey_key_open(&settings, nullptr, 0, &key, nullptr) == LATCHKEY_OK);
  }
  CKey(const CKey&) = delete;
  CKey& operator=(const CKey&) = delete;
  ~CKey() { latchkey_key_close(key); }

  latchkey_key* key = nullptr;
};

void RoundTripInC(std::int32_t hash, std::int32_t cipher, std::size_t length) {
  const CKey key(hash, cipher);
  const Bytes plain(length, 'x');
  Bytes secret(length + 8);
  std::size_t secretLength = secret.size();
  Require(latchkey_encrypt(key.key, plain.data(), plain.size(), secret.data(), &secretLength,
                           nullptr) == LATCHKEY_OK);
  Bytes again(secretLength);
  std::size_t againLength = again.size();
  Require(latchkey_decrypt(key.key, secret.data(), secretLength, again.data(), &againLength,
                           nullptr) == LATCHKEY_OK);
}

void StreamInC(std::int32_t cipher) {
  const CKey key(LATCHKEY_MD5, cipher);
  latchkey_stream* stream = nullptr;
  Require(latchkey_stream_open(key.key, LATCHKEY_ENCRYPT, &stream, nullptr) == LATCHKEY_OK);
  const Bytes plain(10'000, 'x');
  Bytes secret(plain.size() + 8);
  std::size_t length = secret.size();
  Require(latchkey_stream_update(stream, plain.data(), plain.size(), secret.data(), &length,
                                 nullptr) == LATCHKEY_OK);
  length = 8;
  Require(latchkey_stream_finish(stream, secret.data(), &length, nullptr) == LATCHKEY_OK);
  Require(latchkey_stream_close(stream) == LATCHKEY_OK);
}

void EncryptRecordsInC(std::int32_t cipher) {
  const CKey key(LATCHKEY_MD5, cipher);
  const std::array<std::int64_t, 3> offsets{0, 100, 4100};
  const Bytes data(4100, 'x');
  Bytes secret(data.size() + 16);
  std::array<std::int64_t, 3> resultOffsets{};
  const latchkey_records records{sizeof(latchkey_records), 8,           2,
                                 offsets.data(),           data.data(), data.size()};
  latchkey_results results{
      sizeof(latchkey_results), 8, resultOffsets.data(), secret.data(), secret.size(), nullptr, 0};
  Require(latchkey_encrypt_records(key.key, &records, 1, &results, nullptr) == LATCHKEY_OK);
}

void IdentifyInC() {
  const std::array<std::int64_t, 2> offsets{0, 24};
  const Bytes data(24, 'x');
  const latchkey_records records{sizeof(latchkey_records), 8,           1,
                                 offsets.data(),           data.data(), data.size()};
  std::array<latchkey_candidate, 4> candidates{};
  std::size_t count = candidates.size();
  Require(latchkey_identify(&records, nullptr, 0, sizeof candidates[0], candidates.data(), &count,
                            nullptr) == LATCHKEY_OK);
}

void DigestInC(std::int32_t hash) {
  const Bytes data(10'000, 'x');
  std::array<std::uint8_t, 20> digest{};
  std::size_t length = digest.size();
  Require(latchkey_digest(hash, data.data(), data.size(), digest.data(), &length, nullptr) ==
          LATCHKEY_OK);
}

void HexInC() {
  Bytes data(1000, 'x');
  std::vector<char> digits(2 * data.size() + 1);
  std::size_t length = digits.size();
  Require(latchkey_hex_encode(data.data(), data.size(), digits.data(), &length, nullptr) ==
          LATCHKEY_OK);
  std::size_t dataLength = data.size();
  Require(latchkey_hex_decode(digits.data(), length - 1, data.data(), &dataLength, nullptr) ==
          LATCHKEY_OK);
}

void AddHashes(std::vector<Operation>& operations) {
  for (std::int16_t hash = 1; hash <= kHashes; ++hash) {
    const std::string number = std::to_string(hash);
    operations.push_back({"CreateHash " + number, [hash] {
                            Service service;
                            const Text text(10'000, u'x');
                            Require(!service.api.CreateHash(text, hash, true, true).empty());
                          }});
    operations.push_back({"latchkey_digest " + number, [hash] { DigestInC(hash); }});
  }
}

void AddCiphers(std::vector<Operation>& operations) {
  for (std::int16_t cipher = 1; cipher <= kCiphers; ++cipher) {
    const std::string number = std::to_string(cipher);
    const auto hash = static_cast<std::int16_t>(1 + cipher % kHashes);
    for (const std::size_t length : kLengths) {
      const std::string what = number + " of " + std::to_string(length);
      operations.push_back({"Encrypt, Decrypt " + what, [=] { RoundTrip(hash, cipher, length); }});
      operations.push_back({"latchkey_encrypt, latchkey_decrypt " + what,
                            [=] { RoundTripInC(hash, cipher, length); }});
    }
    operations.push_back({"latchkey_stream " + number, [cipher] { StreamInC(cipher); }});
    operations.push_back(
        {"latchkey_encrypt_records " + number, [cipher] { EncryptRecordsInC(cipher); }});
    operations.push_back(
        {"Decrypt under another key " + number, [=] { DecryptUnderAnotherKey(cipher); }});
  }
}

void AddConversions(std::vector<Operation>& operations) {
  operations.push_back({"conversions", [] {
                          const Service service;
                          const clsCryptoAPI& api = service.api;
                          const ByteArray number = api.StringToByteArray(1.0 / 3);
                          const Text text = api.ByteArrayToString(number);
                          Require(api.ConvertStringFromHex(api.ConvertStringToHex(text)) == text);
                        }});
  operations.push_back({"latchkey_hex_encode, latchkey_hex_decode", HexInC});
  operations.push_back({"latchkey_identify", IdentifyInC});
}

void AddFailures(std::vector<Operation>& operations) {
  operations.push_back({"CreateRandom of a negative length", [] {
                          Service service;
                          Require(service.api.CreateRandom(-1).empty());
                          Require(service.main.RTErrorNumber() == 5);
                        }});
  operations.push_back({"CreateHash without a record", [] {
                          clsCryptoAPI api;
                          try {
                            static_cast<void>(api.CreateHash(u"abc", 1));
                          } catch (const Fault&) {
                            return;
                          }
                          Require(false);
                        }});
  operations.push_back({"ConvertStringFromHex of an odd length", [] {
                          const Service service;
                          Require(service.api.ConvertStringFromHex(u"abc").empty());
                        }});
  operations.push_back({"latchkey_hex_decode of an odd length", [] {
                          std::size_t length = 0;
                          Require(latchkey_hex_decode("abc", 3, nullptr, &length, nullptr) ==
                                  LATCHKEY_BAD_HEX);
                        }});
}

}  // namespace

std::vector<Operation> OperationsThatAskTheSystem() {
  return {
      {"CreateRandom",
       [] {
         Service service;
         Require(service.api.CreateRandom(64, true, true).size() == 64);
       }},
      {"CreateSaltValue of letters",
       [] {
         Service service;
         Require(service.api.CreateSaltValue(8, true).size() == 8);
       }},
      {"CreateSaltValue",
       [] {
         Service service;
         Require(!service.api.CreateSaltValue(64).empty());
       }},
      {"CreateHash with random letters",
       [] {
         Service service;
         service.api.UseDefaultPWD(false);
         Require(service.api.CreateHash(u"abc", 1, true, true).size() == 32);
       }},
      {"DoesInternetConnectionExist",
       [] {
         const clsMain main;
         static_cast<void>(main.DoesInternetConnectionExist());
       }},
      {"latchkey_random_bytes",
       [] {
         Bytes bytes(1000);
         Require(latchkey_random_bytes(bytes.data(), bytes.size(), nullptr) == LATCHKEY_OK);
       }},
      {"latchkey_salt",
       [] {
         std::array<char, 32> letters{};
         Require(latchkey_salt(letters.data(), letters.size(), nullptr) == LATCHKEY_OK);
       }},
  };
}

std::vector<Operation> AllOperations() {
  std::vector<Operation> operations = OperationsThatAskTheSystem();
  AddHashes(operations);
  AddCiphers(operations);
  AddConversions(operations);
  AddFailures(operations);
  // Reads the C library's tables if it is the first use in the process; otherwise refused.
  operations.push_back({"SetCodePage", [] { static_cast<void>(SetCodePage(936)); }});
  return operations;
}

}  // namespace latchkey::test
