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

// The same through the C interface, whose handles end with the scope.
struct Handles {
  Handles() {
    Require(latchkey_thread_open(&thread) == LATCHKEY_OK);
    Require(latchkey_crypto_open(&crypto) == LATCHKEY_OK);
  }
  Handles(const Handles&) = delete;
  Handles& operator=(const Handles&) = delete;
  ~Handles() {
    latchkey_crypto_close(crypto);
    latchkey_thread_close(thread);
  }

  latchkey_thread* thread = nullptr;
  latchkey_crypto* crypto = nullptr;
};

void RoundTripInC(std::int32_t hash, std::int32_t cipher, std::size_t length) {
  const Handles handles;
  const latchkey_key key{LATCHKEY_ENHANCED, hash, cipher, 0, nullptr, 0};
  const Bytes plain(length, 'x');
  Bytes secret(length + 8);
  std::size_t secretLength = secret.size();
  Require(latchkey_encrypt(handles.crypto, &key, plain.data(), plain.size(), secret.data(),
                           &secretLength) == LATCHKEY_OK);
  Bytes again(secretLength);
  std::size_t againLength = again.size();
  Require(latchkey_decrypt(handles.crypto, &key, secret.data(), secretLength, again.data(),
                           &againLength) == LATCHKEY_OK);
}

void HashInC(std::int32_t hash) {
  const Handles handles;
  const Bytes data(10'000, 'x');
  std::array<std::uint8_t, 20> digest{};
  std::size_t length = digest.size();
  Require(latchkey_hash(handles.crypto, hash, data.data(), data.size(), digest.data(), &length) ==
          LATCHKEY_OK);
}

void HexInC() {
  const Handles handles;
  Bytes data(1000, 'x');
  std::vector<char> digits(2 * data.size() + 1);
  std::size_t length = digits.size();
  Require(latchkey_hex_encode(data.data(), data.size(), digits.data(), &length) == LATCHKEY_OK);
  std::size_t dataLength = data.size();
  Require(latchkey_hex_decode(digits.data(), length - 1, data.data(), &dataLength) == LATCHKEY_OK);
}

void MakeTextInC(decltype(latchkey_create_random)& make, std::uint32_t flags) {
  const Handles handles;
  Bytes text(100);
  std::size_t length = text.size();
  Require(make(handles.crypto, flags, 32, text.data(), &length) == LATCHKEY_OK);
}

void AddHashes(std::vector<Operation>& operations) {
  for (std::int16_t hash = 1; hash <= kHashes; ++hash) {
    const std::string number = std::to_string(hash);
    operations.push_back({"CreateHash " + number, [hash] {
                            Service service;
                            const Text text(10'000, u'x');
                            Require(!service.api.CreateHash(text, hash, true, true).empty());
                          }});
    operations.push_back({"latchkey_hash " + number, [hash] { HashInC(hash); }});
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
  operations.push_back({"latchkey_hash without a record", [] {
                          latchkey_crypto* crypto = nullptr;
                          Require(latchkey_crypto_open(&crypto) == LATCHKEY_OK);
                          std::size_t length = 0;
                          const int status = latchkey_hash(crypto, 1, nullptr, 0, nullptr, &length);
                          latchkey_crypto_close(crypto);
                          Require(status == LATCHKEY_NO_RECORD);
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
         const Handles handles;
         Bytes bytes(1000);
         Require(latchkey_random_bytes(handles.crypto, bytes.data(), bytes.size()) == LATCHKEY_OK);
       }},
      {"latchkey_create_random",
       [] { MakeTextInC(latchkey_create_random, LATCHKEY_EXACT_LENGTH); }},
      {"latchkey_create_salt", [] { MakeTextInC(latchkey_create_salt, LATCHKEY_LETTERS_ONLY); }},
      {"latchkey_connection_exists",
       [] {
         const Handles handles;
         std::int32_t connected = 0;
         Require(latchkey_connection_exists(handles.thread, &connected) == LATCHKEY_OK);
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
