// Reads what encrypt_file.vbs wrote: decrypts a file of hexadecimal text with the Linux library
// and writes the plaintext to standard output.
//
//   LATCHKEY_PASSWORD=... decrypt_file FILE HASH CIPHER base|enhanced
//
// encrypt_file.vbs puts a mark of four characters behind the content, which is left away here.
// HASH and CIPHER are the component's numbers: 1 MD5, 2 MD4, 3 MD2, 4 SHA-1; 1 RC4, 2 RC2, 3 DES,
// 4 3DES, 5 two-key 3DES.
#include <algorithm>
#include <cstdlib>
#include <exception>
#include <fstream>
#include <iostream>
#include <iterator>
#include <string>
#include <string_view>

#include <latchkey/com/cls_main.h>
#include <latchkey/crypto/cls_crypto_api.h>

namespace {

using latchkey::ByteArray;
using latchkey::clsCryptoAPI;
using latchkey::clsMain;
using latchkey::Text;

constexpr int kOperationFailed = 1;
constexpr int kWrongUsage = 2;
constexpr std::size_t kMarkLength = 4;

Text FromAscii(std::string_view ascii) { return {ascii.begin(), ascii.end()}; }

std::string ToAscii(const Text& text) {
  std::string ascii;
  for (const char16_t character : text) ascii += static_cast<char>(character);
  return ascii;
}

// The hexadecimal text of the file, without its line ends.
Text ReadHex(const char* path) {
  std::ifstream file(path);
  Text digits;
  for (std::string line; std::getline(file, line);) {
    while (!line.empty() && (line.back() == '\r' || line.back() == ' ')) line.pop_back();
    digits += FromAscii(line);
  }
  return digits;
}

int Decrypt(const char* path, int hash, int cipher, bool enhanced, std::string_view passwordText) {
  const clsMain main;  // makes this thread's error record
  clsCryptoAPI api;
  ByteArray password = api.StringToByteArray(latchkey::TextView(FromAscii(passwordText)));
  api.Password(password);
  api.EnhancedProvider(enhanced);
  api.InputData(api.StringToByteArray(latchkey::TextView(api.ConvertStringFromHex(ReadHex(path)))));
  if (!api.Decrypt(static_cast<std::int16_t>(hash), static_cast<std::int16_t>(cipher))) {
    std::cerr << ToAscii(main.AppErrorDescription()) << " (location " << main.ErrorLocationID()
              << ", number " << main.AppErrorNumber() << ")\n";
    return kOperationFailed;
  }
  const ByteArray output = api.OutputData();
  const auto marked = output.TextElements();
  const auto plaintext = marked.first(marked.size() - std::min(marked.size(), kMarkLength));
  std::cout.write(reinterpret_cast<const char*>(plaintext.data()),
                  static_cast<std::streamsize>(plaintext.size()));
  return std::cout.flush() ? EXIT_SUCCESS : kOperationFailed;
}

}  // namespace

int main(int argc, char** argv) {
  const char* password = std::getenv("LATCHKEY_PASSWORD");
  if (argc != 5 || password == nullptr) {
    std::cerr << "usage: LATCHKEY_PASSWORD=... decrypt_file FILE HASH CIPHER base|enhanced\n";
    return kWrongUsage;
  }
  try {
    return Decrypt(argv[1], std::stoi(argv[2]), std::stoi(argv[3]),
                   std::string_view(argv[4]) == "enhanced", password);
  } catch (const std::exception& error) {
    std::cerr << error.what() << '\n';
    return kOperationFailed;
  }
}
