#include "tests/system/secrets/process_memory.h"

#include <fcntl.h>
#include <unistd.h>

#include <cstdlib>
#include <cstring>
#include <stdexcept>
#include <string_view>

#include "tests/system/secrets/piece_buffer.h"

namespace latchkey::test {
namespace {

PieceBuffer pieces;
std::array<char, 1 << 18> maps;

class File {
 public:
  explicit File(const char* path) : descriptor_(::open(path, O_RDONLY | O_CLOEXEC)) {
    if (descriptor_ < 0) throw std::runtime_error(path);
  }
  File(const File&) = delete;
  File& operator=(const File&) = delete;
  ~File() { ::close(descriptor_); }
  [[nodiscard]] int Descriptor() const noexcept { return descriptor_; }

 private:
  int descriptor_;
};

std::string_view ReadMaps() {
  const File file("/proc/self/maps");
  std::size_t length = 0;
  for (ssize_t got = 1; got > 0; length += static_cast<std::size_t>(got)) {
    if (length + 4096 > maps.size()) throw std::runtime_error("too many maps");
    got = ::read(file.Descriptor(), maps.data() + length, maps.size() - length - 1);
    if (got < 0) throw std::runtime_error("/proc/self/maps");
  }
  return {maps.data(), length};
}

}  // namespace

void ForgetRegisters() noexcept {}

void VisitProcessMemory(MemoryVisitor& visitor) {
  const File memory("/proc/self/mem");
  const auto read = [&](std::uintptr_t address, std::uint8_t* target, std::size_t size) {
    const ssize_t got = ::pread(memory.Descriptor(), target, size, static_cast<off_t>(address));
    return got > 0 ? static_cast<std::size_t>(got) : std::size_t{0};
  };
  std::string_view rest = ReadMaps();
  while (!rest.empty()) {
    const std::string_view line = rest.substr(0, rest.find('\n'));
    rest.remove_prefix(line.size() + 1);
    char* next = nullptr;
    const std::uintptr_t begin = std::strtoull(line.data(), &next, 16);
    const std::uintptr_t end = std::strtoull(next + 1, &next, 16);
    const bool kernels = line.find("[v") != std::string_view::npos;
    if (next[1] == 'r' && !kernels) pieces.VisitRange(begin, end, visitor, read);
  }
}

}  // namespace latchkey::test
