// Outputs that get their names together, after one flush of the disk.
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "cli/cipher_stream.h"
#include "cli/file_plan.h"
#include "cli/file_results.h"
#include "cli/platform/disk_flush.h"
#include "cli/platform/output_file.h"

namespace latchkey::cli {

enum class Sync { Each, End, Never };

// Collects complete outputs under temporary names, and names them in groups. Used by one thread.
// The destructor removes outputs that have no name yet.
class OutputGroup {
 public:
  // Add names the outputs when `most` of them, or many bytes, are waiting.
  OutputGroup(Sync sync, std::size_t most, FileResults& results)
      : sync_(sync), most_(most), results_(results) {}

  // Takes a complete output. Reports it in the results when it has its name.
  void Add(std::unique_ptr<OutputFile> output, PlannedFile file, const ByteCounts& counts);

  // Names the outputs that remain.
  void NameAll();

  // Writes the names to the disk; call it last.
  void FlushNames();

 private:
  struct Member {
    PlannedFile file;
    ByteCounts counts;
  };

  void Name(OutputFile& output, const Member& member, bool isFlushed);

  Sync sync_;
  std::size_t most_;
  FileResults& results_;
  DiskFlush disk_;
  std::vector<std::unique_ptr<OutputFile>> outputs_;
  std::vector<Member> members_;  // members_[i] describes outputs_[i]
  std::uint64_t bytes_ = 0;
};

}  // namespace latchkey::cli
