// Runs a driver over files: the main program of builds without a fuzzer.
#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

#include "tests/system/fuzz/input.h"

int main(int argc, char** argv) {
  std::vector<std::filesystem::path> files;
  for (const std::filesystem::path folder : std::vector<char*>(argv + 1, argv + argc)) {
    for (const auto& entry : std::filesystem::directory_iterator(folder)) files.push_back(entry);
  }
  std::sort(files.begin(), files.end());
  for (const auto& file : files) {
    std::printf("%s\n", file.string().c_str());
    std::ifstream stream(file, std::ios::binary);
    const std::vector<char> bytes{std::istreambuf_iterator<char>(stream), {}};
    if (!stream) return 1;
    LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
  }
  std::printf("%zu inputs\n", files.size());
  return files.empty() ? 1 : 0;
}
