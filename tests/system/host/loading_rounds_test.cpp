// A process that loads, uses and unloads the library repeatedly keeps no memory of it.
#include <dlfcn.h>
#include <gtest/gtest.h>
#include <latchkey.h>
#include <latchkey/cls_main.h>
#include <malloc.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>
#include <thread>

namespace latchkey::test {
namespace {

class Library {
 public:
  Library() : handle_(::dlopen(Path(), RTLD_NOW | RTLD_LOCAL)) {
    if (handle_ == nullptr) throw std::runtime_error(::dlerror());  // NOLINT(concurrency-mt-unsafe)
  }
  Library(const Library&) = delete;
  Library& operator=(const Library&) = delete;
  ~Library() { ::dlclose(handle_); }

  // The library's function of that name, whose type is that of its declaration.
  template <class Function>
  [[nodiscard]] Function* Find(const char* name) const {
    void* const address = ::dlsym(handle_, name);
    if (address == nullptr) throw std::runtime_error(name);
    return reinterpret_cast<Function*>(address);
  }

  [[nodiscard]] static bool IsLoaded() {
    void* const handle = ::dlopen(Path(), RTLD_NOW | RTLD_NOLOAD);
    if (handle != nullptr) ::dlclose(handle);
    return handle != nullptr;
  }

 private:
  // The library of the build, or another one that the environment names.
  static const char* Path() {
    const char* const other = std::getenv("LATCHKEY_LIBRARY");  // NOLINT(concurrency-mt-unsafe)
    return other != nullptr ? other : LATCHKEY_LIBRARY;
  }

  void* handle_;
};

#define LATCHKEY_FIND(function) library.Find<decltype(function)>(#function)

// Makes and destroys a clsMain, by the symbols of its constructor and destructor. The C functions
// keep no data of a thread; the classes do.
void UseClass(const Library& library) {
  alignas(clsMain) std::array<std::byte, sizeof(clsMain)> object{};
  library.Find<void(void*)>("_ZN8latchkey7clsMainC1Ev")(object.data());
  library.Find<void(void*)>("_ZN8latchkey7clsMainD1Ev")(object.data());
}

void Use(const Library& library) {
  UseClass(library);
  latchkey_settings settings = LATCHKEY_SETTINGS_INIT;
  settings.hash = LATCHKEY_MD5;
  settings.cipher = LATCHKEY_3DES;
  latchkey_key* key = nullptr;
  EXPECT_EQ(LATCHKEY_FIND(latchkey_key_open)(&settings, nullptr, 0, &key, nullptr), LATCHKEY_OK);
  std::array<std::uint8_t, 100> bytes{};
  std::size_t length = bytes.size();
  EXPECT_EQ(LATCHKEY_FIND(latchkey_encrypt)(key, nullptr, 0, bytes.data(), &length, nullptr),
            LATCHKEY_OK);
  length = 50;
  EXPECT_EQ(
      LATCHKEY_FIND(latchkey_decrypt)(key, bytes.data(), 7, bytes.data() + 50, &length, nullptr),
      LATCHKEY_CIPHER_FAILED);
  EXPECT_EQ(LATCHKEY_FIND(latchkey_key_close)(key), LATCHKEY_OK);
  length = bytes.size();
  EXPECT_EQ(
      LATCHKEY_FIND(latchkey_digest)(LATCHKEY_SHA1, nullptr, 0, bytes.data(), &length, nullptr),
      LATCHKEY_OK);
  std::array<char, 8> letters{};
  EXPECT_EQ(LATCHKEY_FIND(latchkey_salt)(letters.data(), letters.size(), nullptr), LATCHKEY_OK);
}

// The library is unloaded when no thread lives that has used it.
void UseOnAnotherThread() {
  const Library library;
  std::thread([&] { Use(library); }).join();
}

void UseOnThisThread() {
  const Library library;
  Use(library);
}

// The resources of a process. The caches of the C library's allocator are off
// (CMakeLists.txt).
struct Holdings {
  std::size_t heap = 0;
  long mappings = 0;
  long descriptors = 0;

  friend bool operator==(const Holdings&, const Holdings&) = default;
};

void PrintTo(const Holdings& holdings, std::ostream* stream) {
  *stream << holdings.heap << " bytes, " << holdings.mappings << " mappings, "
          << holdings.descriptors << " descriptors";
}

Holdings Now() {
  Holdings now;
  now.heap = ::mallinfo2().uordblks;
  std::ifstream mappings("/proc/self/maps");
  for (std::string line; std::getline(mappings, line);) ++now.mappings;
  const std::filesystem::directory_iterator descriptors("/proc/self/fd");
  now.descriptors = std::distance(begin(descriptors), end(descriptors));
  return now;
}

// The resources of the process after the first rounds, and after many more.
template <class Round>
std::array<Holdings, 2> HoldingsAround(Round&& round) {
  for (int i = 0; i < 10; ++i) round();
  const Holdings before = Now();
  for (int i = 0; i < 200; ++i) round();
  return {before, Now()};
}

TEST(LoadingRoundsTest, NothingIsLeftOfALibraryUsedOnAnotherThread) {
  const auto [before, after] = HoldingsAround(UseOnAnotherThread);
  EXPECT_FALSE(Library::IsLoaded());
  EXPECT_EQ(after, before);
}

// Its own data is freed too: a library that is never used leaves none either.
TEST(LoadingRoundsTest, NothingIsLeftOfALibraryNotUsed) {
  const auto [before, after] = HoldingsAround([] { const Library library; });
  EXPECT_FALSE(Library::IsLoaded());
  EXPECT_EQ(after, before);
}

// The library stays loaded while the thread lives, and so does the thread's data, once.
TEST(LoadingRoundsTest, RoundsOnOneThreadKeepNoMoreThanOne) {
  const auto [before, after] = HoldingsAround(UseOnThisThread);
  EXPECT_EQ(after, before);
}

// The test detects remaining blocks.
TEST(LoadingRoundsTest, WhatARoundKeepsIsFound) {
  const auto [before, after] = HoldingsAround([] {
    static std::array<void* volatile, 1000> kept{};
    static std::size_t count = 0;
    kept.at(count++) = std::malloc(16);
  });
  EXPECT_GT(after.heap, before.heap);
}

}  // namespace
}  // namespace latchkey::test
