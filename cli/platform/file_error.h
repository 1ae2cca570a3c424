// A failed system call on a file.
#pragma once

#include <string>
#include <system_error>
#include <utility>

namespace latchkey::cli {

// The failure of a system call. what() is text such as "cannot open: No such file or directory";
// Name() is the file's name.
class FileError final : public std::system_error {
 public:
  // `code` is errno on Linux, GetLastError() on Windows.
  FileError(int code, const char* action, std::string name)
      : std::system_error(code, std::system_category(), action), name_(std::move(name)) {}

  [[nodiscard]] const std::string& Name() const noexcept { return name_; }

 private:
  std::string name_;
};

}  // namespace latchkey::cli
