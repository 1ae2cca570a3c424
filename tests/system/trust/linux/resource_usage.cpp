#include "tests/system/trust/resource_usage.h"

#include <malloc.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <iterator>

#include "crypto/crypto_state.h"
#include "tests/support/faulty_provider.h"

namespace latchkey::test {
namespace {

FaultyProvider& Counter() {
  static FaultyProvider counter;
  return counter;
}

std::uint64_t ResidentBytes() {
  std::uint64_t size = 0;
  std::uint64_t resident = 0;
  std::ifstream("/proc/self/statm") >> size >> resident;
  return resident * static_cast<std::uint64_t>(sysconf(_SC_PAGESIZE));
}

std::uint64_t OpenFiles() {
  const std::filesystem::directory_iterator files("/proc/self/fd");
  return static_cast<std::uint64_t>(std::distance(begin(files), end(files)));
}

}  // namespace

void CountProviderHandles() { ThisThreadCrypto().provider = &Counter(); }

ResourceUsage CurrentUsage() {
  return {ResidentBytes(), mallinfo2().uordblks, OpenFiles(), Counter().OpenHandles()};
}

}  // namespace latchkey::test
