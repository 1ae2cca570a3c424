#include "cli/platform/linux/file_rights.h"

#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <cerrno>
#include <vector>

namespace latchkey::cli {
namespace {

constexpr const char* kAccessList = "system.posix_acl_access";
constexpr std::size_t kLargestList = std::size_t{1} << 16;  // XATTR_SIZE_MAX
constexpr mode_t kOwnersRights = 0700;
constexpr mode_t kAllRights = 0777;

// Read once: reading the mask changes it for a moment, for all threads.
mode_t ModeOfNewFile() {
  static const mode_t mask = [] {
    const mode_t old = ::umask(0);
    ::umask(old);
    return old;
  }();
  return 0666 & ~mask;
}

// False when the file has another group than the old one.
bool KeepOwnerAndGroup(int file, const struct stat& old) {
  return ::fchown(file, old.st_uid, old.st_gid) == 0 ||
         ::fchown(file, static_cast<uid_t>(-1), old.st_gid) == 0;
}

enum class AccessList { None, Kept, Lost };

// Copies the access list. If the old file has none, removes the list that the folder gives to new
// files.
AccessList KeepAccessList(int file, const std::string& place) {
  std::vector<char> list(kLargestList);
  const ssize_t size = ::getxattr(place.c_str(), kAccessList, list.data(), list.size());
  if (size < 0) {
    const bool hasNone = errno == ENODATA || errno == ENOTSUP;
    const bool isClear =
        ::fremovexattr(file, kAccessList) == 0 || errno == ENODATA || errno == ENOTSUP;
    return hasNone && isClear ? AccessList::None : AccessList::Lost;
  }
  const int set = ::fsetxattr(file, kAccessList, list.data(), static_cast<std::size_t>(size), 0);
  return set == 0 ? AccessList::Kept : AccessList::Lost;
}

// The rights that both the group and everyone else had: a member of the new group may have belonged
// to either before.
mode_t WithoutGroup(mode_t mode) {
  const mode_t common = (mode >> 3U) & mode & 07U;
  return (mode & kOwnersRights) | common << 3U | common;
}

mode_t KeepRights(int file, const std::string& place, const struct stat& old) {
  const bool hasGroup = KeepOwnerAndGroup(file, old);
  const AccessList list = KeepAccessList(file, place);
  if (list == AccessList::Lost || (list == AccessList::Kept && !hasGroup)) {
    return old.st_mode & kOwnersRights;
  }
  return (hasGroup ? old.st_mode : WithoutGroup(old.st_mode)) & kAllRights;
}

}  // namespace

// Sets the mode last, since changing the owner and the list changes it.
void SetRights(const UniqueFile& file, const std::string& place, Readers readers) {
  const int descriptor = static_cast<int>(file.Get());
  struct stat old {};
  const bool replaces = ::stat(place.c_str(), &old) == 0;
  if (!replaces && errno != ENOENT) return;  // its rights are not known
  mode_t mode = 0;
  if (readers == Readers::Owner) {
    if (!replaces) return;
    KeepOwnerAndGroup(descriptor, old);
    mode = old.st_mode & kOwnersRights;
  } else {
    mode = replaces ? KeepRights(descriptor, place, old) : ModeOfNewFile();
  }
  static_cast<void>(::fchmod(descriptor, mode));
}

}  // namespace latchkey::cli
