// The names in a folder.
#pragma once

#include <memory>
#include <string>

namespace latchkey::cli {

// Reads the names of a folder's entries, in no order, without "." and "..". Used by one thread.
class FolderReader {
 public:
  // Opens a folder; an empty name is the current folder.
  explicit FolderReader(const std::string& folder);
  FolderReader(const FolderReader&) = delete;
  FolderReader& operator=(const FolderReader&) = delete;
  ~FolderReader();

  // Sets `name` to the next name. Returns false at the end and after a failure.
  [[nodiscard]] bool Next(std::string& name);

  // Why the folder could not be read to its end: errno, or GetLastError(); 0 without a failure.
  [[nodiscard]] int Reason() const noexcept { return reason_; }

 private:
  class Entries;

  std::unique_ptr<Entries> entries_;
  int reason_ = 0;
};

}  // namespace latchkey::cli
