// The inputs of a run with many files and their outputs.
#pragma once

#include <cstdint>
#include <mutex>
#include <string>
#include <string_view>

#include "cli/failure.h"
#include "cli/many_file_options.h"
#include "cli/name_conflicts.h"
#include "cli/platform/file_state.h"
#include "cli/spool.h"
#include "crypto/password_cipher.h"

namespace latchkey::cli {

// File: an input. Folder: a folder to make. Each later kind is an input that cannot be read.
enum class PlannedKind : std::uint32_t {
  File,
  Folder,
  Unreadable,
  IsFolder,
  NotRegular,
  NoSuffix,
  LeavesFolder
};

struct PlannedFile {
  PlannedKind kind = PlannedKind::File;
  std::int32_t reason = 0;  // why it is Unreadable: errno, or GetLastError()
  std::uint64_t size = 0;   // bytes of the input when the plan was made
  std::string input;
  std::string output;

  // The failure of an input that cannot be read.
  [[nodiscard]] Failure WhyNot(const std::string& suffix) const;
};

// Names are kept in scratch files, so that memory is constant. The options must outlive it.
class FilePlan {
 public:
  // Reads all names and folders. Writes nothing outside the scratch files. Raises CommandError
  // (wrong usage) if two inputs would have one output, or an output is one of the inputs; FileError
  // if the list cannot be read.
  FilePlan(const ManyFileOptions& options, CipherDirection direction);

  // Makes the outputs' folders, and removes what killed processes left in them. A folder that
  // cannot be made is not reported: its outputs will fail.
  void PrepareFolders() const;

  // The number of files to read, and the sum of their sizes in bytes.
  [[nodiscard]] std::uint64_t Files() const noexcept { return count_; }
  [[nodiscard]] std::uint64_t Bytes() const noexcept { return bytes_; }

  // The number of files in folders that are left out: links, devices, and names that the suffix
  // excludes.
  [[nodiscard]] std::uint64_t LeftOut() const noexcept { return leftOut_; }

 private:
  friend class PlanReader;

  // `kept` is the offset in an input's name of the part that is also in its output's name.
  void AddNamed(const std::string& given, std::size_t kept);
  void AddList(const std::string& list);
  void AddFolder(const std::string& name, std::size_t kept);
  void ReadFolders();
  void ReadFolder(const std::string& name, std::size_t kept);
  void AddEntry(const std::string& name, std::size_t kept);
  void Add(PlannedKind kind, const std::string& name, std::size_t kept, const FileState& state);
  void AddFacts(const PlannedFile& file, const FileState& state, std::uint64_t place);
  void Check();

  [[nodiscard]] bool LeavesOut(std::string_view name) const;
  [[nodiscard]] bool LacksSuffix(std::string_view name) const;
  [[nodiscard]] std::string OutputOf(PlannedKind kind, const std::string& name,
                                     std::size_t kept) const;
  // The output's name in a form that is the same for all its spellings.
  [[nodiscard]] std::string KeyOf(const std::string& output);

  const ManyFileOptions& options_;
  CipherDirection direction_;
  std::string folder_;  // without a separator at the end, unless it is the root
  FileState folderState_;
  Spool files_;
  Spool folders_;                  // the folders to read
  std::uint64_t foldersRead_ = 0;  // the offset of the next one in folders_
  NameConflicts conflicts_;
  std::uint64_t count_ = 0;
  std::uint64_t bytes_ = 0;
  std::uint64_t leftOut_ = 0;
  std::string lastParent_;      // the folder that KeyOf resolved last
  std::string lastTrueParent_;  // its name without links
};

// Reads a plan from its start. The plan must outlive it. Next may be called by any thread.
class PlanReader {
 public:
  explicit PlanReader(const FilePlan& plan, std::uint64_t place = 0)
      : plan_(plan), reader_(plan.files_, place) {}

  // False at the end.
  [[nodiscard]] bool Next(PlannedFile& file);

 private:
  const FilePlan& plan_;
  std::mutex mutex_;
  SpoolReader reader_;
};

}  // namespace latchkey::cli
