// Reads the output of encrypt_file.vbs: decrypts a file of hexadecimal text with the Linux library
// and writes the plaintext to standard output.
//
//   LATCHKEY_PASSWORD=... decrypt_file FILE HASH CIPHER base|enhanced
//
// The password must be ASCII: the bytes of other characters depend on the system's encoding.
// The end mark of encrypt_file.vbs is removed; content without one is written unchanged.
// HASH and CIPHER are the component's numbers: 1 MD5, 2 MD4, 3 MD2, 4 SHA-1; 1 RC4, 2 RC2, 3 DES,
// 4 3DES, 5 two-key 3DES.
#include <algorithm>
#include <array>
#include <cstdlib>
#include <exception>
#include <fstream>
#include <iostream>
#include <iterator>
#include <string>
#include <string_view>

#include <latchkey/cls_crypto_api.h>
#include <latchkey/cls_main.h>

namespace {

using latchkey::ByteArray;
using latchkey::clsCryptoAPI;
using latchkey::clsMain;
using latchkey::Text;

constexpr int kOperationFailed = 1;
constexpr int kWrongUsage = 2;
constexpr std::int16_t kRunTimeFailure = 1;

// Without its digit, see "Storing a ciphertext" in docs/reference.md.
constexpr std::string_view kEndMark = "~lkend~";

// The end marks of earlier versions of encrypt_file.vbs.
constexpr std::array<std::string_view, 8> kEarlierMarks{"end|", "end!", "end#", "end$",
                                                        "end%", "end&", "end*", "end+"};

bool IsAscii(std::string_view text) {
  return std::none_of(text.begin(), text.end(),
                      [](char character) { return static_cast<unsigned char>(character) > 0x7F; });
}

Text FromAscii(std::string_view ascii) { return {ascii.begin(), ascii.end()}; }

std::string ToAscii(const Text& text) {
  std::string ascii;
  for (const char16_t character : text) ascii += static_cast<char>(character);
  return ascii;
}

// The hexadecimal text in the file, without line ends and trailing spaces.
Text ReadHex(const char* path) {
  std::ifstream file(path);
  Text digits;
  for (std::string line; std::getline(file, line);) {
    while (!line.empty() && (line.back() == '\r' || line.back() == ' ')) line.pop_back();
    digits += FromAscii(line);
  }
  return digits;
}

// Content without a mark is returned unchanged.
std::string_view WithoutEndMark(std::string_view content) {
  for (const std::string_view mark : kEarlierMarks) {
    if (content.ends_with(mark)) return content.substr(0, content.size() - mark.size());
  }
  const std::size_t end = content.size() - std::min(content.size(), kEndMark.size() + 1);
  const bool marked = content.substr(end).starts_with(kEndMark) &&
                      content.find_last_of("0123456789") == content.size() - 1;
  return marked ? content.substr(0, end) : content;
}

// Prints the error record: no operation throws.
int ReportFailure(const clsMain& main) {
  const bool runTime = main.ErrorType() == kRunTimeFailure;
  std::cerr << ToAscii(runTime ? main.RTErrorDescription() : main.AppErrorDescription())
            << " (location " << main.ErrorLocationID() << ", number "
            << (runTime ? main.RTErrorNumber() : main.AppErrorNumber()) << ")\n";
  return kOperationFailed;
}

int Decrypt(const char* path, int hash, int cipher, bool enhanced, std::string_view passwordText) {
  const clsMain main;  // makes this thread's error record
  clsCryptoAPI api;
  ByteArray password = api.StringToByteArray(latchkey::TextView(FromAscii(passwordText)));
  api.Password(password);
  api.EnhancedProvider(enhanced);
  const Text ciphertext = api.ConvertStringFromHex(ReadHex(path));
  if (main.ErrorExists()) return ReportFailure(main);
  api.InputData(api.StringToByteArray(latchkey::TextView(ciphertext)));
  if (!api.Decrypt(static_cast<std::int16_t>(hash), static_cast<std::int16_t>(cipher))) {
    return ReportFailure(main);
  }
  const ByteArray output = api.OutputData();
  const auto bytes = output.TextElements();
  const std::string_view content =
      WithoutEndMark({reinterpret_cast<const char*>(bytes.data()), bytes.size()});
  std::cout.write(content.data(), static_cast<std::streamsize>(content.size()));
  return std::cout.flush() ? EXIT_SUCCESS : kOperationFailed;
}

}  // namespace

int main(int argc, char** argv) {
  const char* password = std::getenv("LATCHKEY_PASSWORD");
  if (argc != 5 || password == nullptr) {
    std::cerr << "usage: LATCHKEY_PASSWORD=... decrypt_file FILE HASH CIPHER base|enhanced\n";
    return kWrongUsage;
  }
  if (!IsAscii(password)) {
    std::cerr << "LATCHKEY_PASSWORD has characters that are not ASCII\n";
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
