// The peak memory of one Encrypt: prints the process's peak in bytes above the memory in use with
// an object that has no input. The object's copy of the input counts.
//
//   encrypt_memory LENGTH CIPHER
#include <sys/resource.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>
#include <vector>

#include "latchkey/cls_crypto_api.h"
#include "latchkey/cls_main.h"

namespace {

// A figure of /proc/self/status, in bytes.
long long Status(const std::string& name) {
  std::ifstream status("/proc/self/status");
  for (std::string line; std::getline(status, line);) {
    if (line.starts_with(name + ":")) return std::atoll(line.c_str() + name.size() + 1) * 1024;
  }
  return -1;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) return 2;
  const auto length = static_cast<std::size_t>(std::atoll(argv[1]));
  const auto cipher = static_cast<std::int16_t>(std::atoi(argv[2]));
  const latchkey::clsMain main;
  latchkey::clsCryptoAPI api;
  api.EnhancedProvider(true);
  const long long empty = Status("VmRSS");
  {
    const std::vector<std::uint8_t> data(length, 'a');
    api.InputData(latchkey::ByteArray::WithTrailingZero(data));
  }
  std::ofstream("/proc/self/clear_refs") << "5";  // the peak begins anew
  if (!api.Encrypt(1, cipher)) return 1;
  std::printf("%lld\n", Status("VmHWM") - empty);
  return 0;
}
