// The check of files against lists of their digests.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "cli/checksum_file.h"
#include "cli/hash_run.h"

namespace latchkey::cli {

struct CheckOptions {
  bool status = false;         // print nothing
  bool warn = false;           // report each line that is not a checksum line
  bool strict = false;         // count such a line as a failure
  bool ignoreMissing = false;  // skip files that do not exist
};

// Checks any number of lists, and adds the results to `run`.
class ChecksumCheck {
 public:
  ChecksumCheck(const CheckOptions& options, HashRun& run, const Report& report)
      : options_(options), run_(run), report_(report), form_(ChecksumFormOf(run.Hash())) {}

  // Checks the files of a list.
  void Check(const std::string& listName);

  // Prints the totals of all lists, and adds them to the JSON result.
  void Finish(Json& result) const;

 private:
  void CheckLines(const std::vector<std::string>& lines, const std::string& listName);
  void RequireSome(std::size_t proper, std::size_t verified, const std::string& listName);
  void NoteImproper(const std::string& listName, std::size_t lineNumber);
  // Returns false if the file was skipped because it does not exist.
  bool CheckFile(const Checksum& expected);
  void PrintOutcome(const std::string& file, const char* outcome) const;

  const CheckOptions& options_;
  HashRun& run_;
  const Report& report_;
  ChecksumForm form_;
  std::size_t mismatches_ = 0;
  std::size_t unread_ = 0;
  std::size_t improper_ = 0;
};

}  // namespace latchkey::cli
