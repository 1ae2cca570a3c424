#include "cli/platform/output_file.h"

#include <windows.h>

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <vector>

#include "cli/name_parts.h"
#include "cli/platform/windows/file_rights.h"
#include "cli/platform/windows/handles.h"
#include "cli/platform/windows/owner_only.h"
#include "cli/temporary_name.h"
#include "platform/windows/wide_text.h"

namespace latchkey::cli {
namespace {

UniqueFile OpenUnread(const std::string& name) {
  return Owned(CreateFileW(platform::Widened(name).c_str(), 0,
                           FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                           OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr));
}

// The kind of file that a name denotes. Opening a folder fails; a device cannot be replaced.
enum class Kind { Nothing, File, Folder, Device };

Kind KindOf(const std::string& name) {
  const UniqueFile file = OpenUnread(name);
  if (!file) {
    const DWORD attributes = GetFileAttributesW(platform::Widened(name).c_str());
    return attributes == INVALID_FILE_ATTRIBUTES ? Kind::Nothing : Kind::File;
  }
  const DWORD attributes = GetFileAttributesW(platform::Widened(name).c_str());
  const bool isFolder =
      attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
  if (isFolder) return Kind::Folder;
  return GetFileType(HandleOf(file)) == FILE_TYPE_DISK ? Kind::File : Kind::Device;
}

// The target of a link; for other files the name itself.
std::string Followed(const std::string& name) {
  const DWORD attributes = GetFileAttributesW(platform::Widened(name).c_str());
  const bool isLink =
      attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0;
  if (!isLink) return name;
  const UniqueFile target = OpenUnread(name);
  if (!target) ThrowLastError("cannot follow the link", name);
  std::wstring full(GetFinalPathNameByHandleW(HandleOf(target), nullptr, 0, 0), L'\0');
  const DWORD length =
      GetFinalPathNameByHandleW(HandleOf(target), full.data(), static_cast<DWORD>(full.size()), 0);
  if (length == 0) ThrowLastError("cannot follow the link", name);
  full.resize(std::min<std::size_t>(length, full.size()));
  return platform::Narrowed(full);
}

// While this is set, the system removes the file when its handle is closed, even if the process
// crashes.
bool SetRemoval(const UniqueFile& file, bool remove) {
  FILE_DISPOSITION_INFO removal;
  removal.DeleteFile = remove ? TRUE : FALSE;
  return SetFileInformationByHandle(HandleOf(file), FileDispositionInfo, &removal,
                                    sizeof removal) != FALSE;
}

std::wstring FullName(const std::string& name) {
  const std::wstring wide = platform::Widened(name);
  std::wstring full(GetFullPathNameW(wide.c_str(), 0, nullptr, nullptr), L'\0');
  const DWORD length =
      GetFullPathNameW(wide.c_str(), static_cast<DWORD>(full.size()), full.data(), nullptr);
  full.resize(std::min<std::size_t>(length, full.size()));
  return full;
}

// NUL, under any of its names.
bool IsNullDevice(const std::string& name) {
  return CompareStringOrdinal(FullName(name).c_str(), -1, LR"(\\.\NUL)", -1, TRUE) == CSTR_EQUAL;
}

// A rename that allocates its arguments first: running out of memory after SetRemoval(false) would
// leave the temporary file.
class Renaming {
 public:
  Renaming(const std::string& to, bool replace);
  [[nodiscard]] bool Apply(const UniqueFile& file) noexcept;

 private:
  FILE_RENAME_INFO* Information() noexcept {
    return reinterpret_cast<FILE_RENAME_INFO*>(storage_.data());
  }

  DWORD size_ = 0;
  std::vector<std::uint64_t> storage_;
};

Renaming::Renaming(const std::string& to, bool replace) {
  const std::wstring name = FullName(to);
  const std::size_t bytes = name.size() * sizeof(wchar_t);
  size_ = static_cast<DWORD>(sizeof(FILE_RENAME_INFO) + bytes);
  storage_.resize(size_ / sizeof(std::uint64_t) + 1);
  FILE_RENAME_INFO* const renaming = Information();
  renaming->ReplaceIfExists = replace ? TRUE : FALSE;
  renaming->FileNameLength = static_cast<DWORD>(bytes);
  std::memcpy(renaming->FileName, name.data(), bytes);
}

bool Renaming::Apply(const UniqueFile& file) noexcept {
  return SetFileInformationByHandle(HandleOf(file), FileRenameInfo, Information(), size_) != FALSE;
}

}  // namespace

OutputFile::OutputFile(const std::string& name, bool replace, Readers readers)
    : name_(name), replace_(replace), readers_(readers) {
  const Kind kind = name == "-" ? Kind::Device : KindOf(name);
  const bool isOpenToAll = name == "-" || kind == Kind::Folder || IsNullDevice(name);
  if (kind == Kind::File || kind == Kind::Nothing) place_ = Followed(name);
  if (kind != Kind::Nothing && !replace && !isOpenToAll) {
    throw FileError(ERROR_FILE_EXISTS, "cannot create", name_);
  }
  if (kind == Kind::Folder || kind == Kind::Device) {
    OpenAsItIs();
  } else {
    OpenTemporary();
  }
}

void OutputFile::OpenAsItIs() {
  if (name_ == "-") {
    name_ = "standard output";
    file_ = CopyOf(GetStdHandle(STD_OUTPUT_HANDLE), "cannot write", name_);
    return;
  }
  file_ =
      Owned(CreateFileW(platform::Widened(name_).c_str(), GENERIC_WRITE,
                        FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING, 0, nullptr));
  if (!file_) ThrowLastError("cannot write", name_);
}

// A file that replaces another gets that file's rights at the end, and no rights before.
void OutputFile::OpenTemporary() {
  OwnerOnly ownerOnly;
  const bool isClosed = readers_ == Readers::Owner || KindOf(place_) == Kind::File;
  SECURITY_ATTRIBUTES* const rights = isClosed ? ownerOnly.Get() : nullptr;
  if (isClosed && rights == nullptr) ThrowLastError("cannot create", name_);
  const std::string folder(BeforeLastPart(place_));
  const std::string temporary = folder + NewTemporaryName();
  if (temporary == folder) throw FileError(ERROR_GEN_FAILURE, "cannot create", name_);
  constexpr DWORD kAccess = GENERIC_WRITE | DELETE | WRITE_DAC;
  file_ = Owned(CreateFileW(platform::Widened(temporary).c_str(), kAccess, 0, rights, CREATE_NEW,
                            FILE_ATTRIBUTE_NORMAL, nullptr));
  if (!file_) ThrowLastError("cannot create", name_);
  if (!SetRemoval(file_, true)) {
    const auto reason = static_cast<int>(GetLastError());
    file_ = {};
    DeleteFileW(platform::Widened(temporary).c_str());
    throw FileError(reason, "cannot create", name_);
  }
  temporary_ = temporary;
}

// The system removes an uncommitted file.
OutputFile::~OutputFile() = default;

void OutputFile::Write(std::span<const std::uint8_t> bytes) {
  while (!bytes.empty()) {
    const auto wanted = static_cast<DWORD>(std::min(bytes.size(), kLargestTransfer));
    DWORD count = 0;
    if (!WriteFile(HandleOf(file_), bytes.data(), wanted, &count, nullptr)) {
      ThrowLastError("cannot write", name_);
    }
    bytes = bytes.subspan(count);
  }
}

void OutputFile::Commit() {
  Seal();
  Flush();
  GiveName();
  file_.Reset();
}

void OutputFile::SetTimes(const FileTimes& times) {
  if (temporary_.empty()) return;
  const auto split = [](std::int64_t time) {
    const auto bits = static_cast<std::uint64_t>(time);
    return FILETIME{static_cast<DWORD>(bits), static_cast<DWORD>(bits >> 32U)};
  };
  const FILETIME accessed = split(times.accessed);
  const FILETIME modified = split(times.modified);
  if (!SetFileTime(HandleOf(file_), nullptr, &accessed, &modified)) {
    ThrowLastError("cannot set the times", name_);
  }
}

void OutputFile::Seal() {
  if (temporary_.empty() || readers_ != Readers::Default) return;
  CopyRights(platform::Widened(place_), HandleOf(file_));
}

void OutputFile::Flush() {
  if (temporary_.empty()) return;
  if (!FlushFileBuffers(HandleOf(file_))) ThrowLastError("cannot write", name_);
}

void OutputFile::GiveName() {
  if (temporary_.empty()) return;
  Renaming renaming(place_, replace_);
  if (!SetRemoval(file_, false)) ThrowLastError("cannot create", name_);
  if (!renaming.Apply(file_)) {
    const auto reason = static_cast<int>(GetLastError());
    SetRemoval(file_, true);
    throw FileError(reason, "cannot create", name_);
  }
  temporary_.clear();
}

// The system writes names to the disk itself.
void OutputFile::FlushName() {}

}  // namespace latchkey::cli
