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
  bool warn = false;           // name each line of another form
  bool strict = false;         // such a line is a failure
  bool ignoreMissing = false;  // a file that is not there is no failure
};

class ChecksumCheck {
 public:
  ChecksumCheck(const CheckOptions& options, HashRun& run, const Report& report)
      : options_(options), run_(run), report_(report), form_(ChecksumFormOf(run.Hash())) {}

  // Checks the files of a list.
  void Check(const std::string& listName);

  // Prints the sums, and adds them to the result.
  void Finish(Json& result) const;

 private:
  void CheckLines(const std::vector<std::string>& lines, const std::string& listName);
  void RequireSome(std::size_t proper, std::size_t verified, const std::string& listName);
  void NoteImproper(const std::string& listName, std::size_t lineNumber);
  // Whether there was a digest to compare with.
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
