#include "cli/platform/scratch_file.h"

#include <windows.h>

#include <array>
#include <string>

#include "cli/platform/windows/handles.h"
#include "cli/temporary_name.h"
#include "platform/windows/wide_text.h"

namespace latchkey::cli {
namespace {

constexpr const char* kScratch = "the folder for temporary files";

OVERLAPPED PlaceAt(std::uint64_t offset) noexcept {
  OVERLAPPED place{};
  place.Offset = static_cast<DWORD>(offset);
  place.OffsetHigh = static_cast<DWORD>(offset >> 32U);
  return place;
}

}  // namespace

ScratchFile::ScratchFile() {
  std::array<wchar_t, MAX_PATH + 1> folder{};
  if (GetTempPathW(static_cast<DWORD>(folder.size()), folder.data()) == 0) {
    ThrowLastError("cannot make a temporary file", kScratch);
  }
  const std::wstring name = folder.data() + platform::Widened(NewTemporaryName());
  file_ = Owned(CreateFileW(name.c_str(), GENERIC_READ | GENERIC_WRITE, 0, nullptr, CREATE_NEW,
                            FILE_ATTRIBUTE_TEMPORARY | FILE_FLAG_DELETE_ON_CLOSE, nullptr));
  if (!file_) ThrowLastError("cannot make a temporary file", kScratch);
}

void ScratchFile::Append(std::span<const std::uint8_t> bytes) {
  while (!bytes.empty()) {
    OVERLAPPED place = PlaceAt(size_);
    DWORD count = 0;
    if (!WriteFile(HandleOf(file_), bytes.data(), static_cast<DWORD>(bytes.size()), &count,
                   &place)) {
      ThrowLastError("cannot write a temporary file", kScratch);
    }
    size_ += count;
    bytes = bytes.subspan(count);
  }
}

std::size_t ScratchFile::ReadAt(std::uint64_t offset, std::span<std::uint8_t> bytes) const {
  std::size_t done = 0;
  while (done < bytes.size()) {
    OVERLAPPED place = PlaceAt(offset + done);
    DWORD count = 0;
    if (!ReadFile(HandleOf(file_), bytes.data() + done, static_cast<DWORD>(bytes.size() - done),
                  &count, &place)) {
      if (GetLastError() == ERROR_HANDLE_EOF) break;
      ThrowLastError("cannot read a temporary file", kScratch);
    }
    if (count == 0) break;
    done += count;
  }
  return done;
}

}  // namespace latchkey::cli
