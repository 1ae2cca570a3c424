#include "cli/hash_run.h"

#include "cli/platform/input_file.h"
#include "cli/progress.h"

namespace latchkey::cli {

HashRun::HashRun(std::int16_t hash, bool silent, const Report& report)
    : hash_(hash), silent_(silent), report_(report), context_(OpenSharedProvider(false)) {
  if (!context_) throw CommandError(FailureAt(check::kHashProvider));
}

std::string HashRun::DigestOf(const std::string& file) {
  InputFile input(file);
  Progress progress(input.Size(), report_.IsQuiet() || silent_);
  return FileDigest(context_, hash_, input, progress);
}

void HashRun::Fail(const std::string& file, const Failure& failure) {
  Fail();
  if (report_.IsJson()) {
    Add({{"file", file}, {"error", Report::ErrorObject(failure)}});
  } else if (!silent_) {
    report_.Fail(failure);
  }
}

}  // namespace latchkey::cli
