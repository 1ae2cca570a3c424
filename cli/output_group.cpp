#include "cli/output_group.h"

#include <utility>

#include "cli/failure.h"
#include "cli/platform/file_error.h"

namespace latchkey::cli {
namespace {

// The most bytes of finished outputs that a thread loses if the process is killed.
constexpr std::uint64_t kMostBytes = std::uint64_t{64} << 20;

}  // namespace

void OutputGroup::Add(std::unique_ptr<OutputFile> output, PlannedFile file,
                      const ByteCounts& counts) {
  output->Seal();
  outputs_.push_back(std::move(output));
  members_.push_back({std::move(file), counts});
  bytes_ += counts.out;
  if (sync_ != Sync::End || outputs_.size() >= most_ || bytes_ >= kMostBytes) NameAll();
}

void OutputGroup::NameAll() {
  const bool isFlushed = sync_ == Sync::End && disk_.Bytes(outputs_);
  for (std::size_t i = 0; i < outputs_.size(); ++i) {
    Name(*outputs_[i], members_[i], isFlushed);
    outputs_[i].reset();
  }
  outputs_.clear();
  members_.clear();
  bytes_ = 0;
}

void OutputGroup::Name(OutputFile& output, const Member& member, bool isFlushed) {
  try {
    const bool flushes = sync_ != Sync::Never && !isFlushed;
    if (flushes) output.Flush();
    output.GiveName();
    if (flushes) output.FlushName();
  } catch (const FileError& error) {
    return results_.AddFailed(member.file, FailureOf(error));
  }
  results_.AddDone(member.file, member.counts);
}

void OutputGroup::FlushNames() {
  if (disk_.Names()) return;
  results_.AddFailed(Failure{.text = "cannot write the outputs' names to the disk"});
}

}  // namespace latchkey::cli
